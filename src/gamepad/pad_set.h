// The four controller ports of a configuration, and the lists of codes that they share.
//
// A plain value: copied whole into a dialog that edits it, and back.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "gamepad/pad.h"

namespace velto {

class CPadSet {
  public:
    // Numbers the ports. They have no defaults yet, which are the owner's to set.
    CPadSet();

    // `number` is 1 to 4.
    CPad& At(int number) { return pads_.at(static_cast<std::size_t>(number - 1)); }
    const CPad& At(int number) const { return pads_.at(static_cast<std::size_t>(number - 1)); }

    // The codes of ports 1 to 4 in that order: four of each port, and one of each in the others.
    std::string GetAxisString() const;
    std::string GetTypeString() const { return ListOf(&CPad::padType); }
    std::string GetMotorString() const { return ListOf(&CPad::motorType); }
    std::string GetBMotorString() const { return ListOf(&CPad::bMotorType); }
    std::string GetSMotorString() const { return ListOf(&CPad::sMotorType); }

    // CPad::Load for the port of that number; does nothing if there is none. `keys` is the port's
    // own list, the others are whole.
    void SetPad(int number, std::string_view keys, std::string_view axes, std::string_view motors,
                std::string_view big_motors, std::string_view small_motors, std::string_view types);

    bool operator==(const CPadSet&) const = default;

  private:
    std::string ListOf(int CPad::*field) const;

    std::array<CPad, kPadCount> pads_;
};

}  // namespace velto
