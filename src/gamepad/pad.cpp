#include "gamepad/pad.h"

#include <algorithm>
#include <charconv>
#include <span>
#include <system_error>

#include "gamepad/input_codes.h"
#include "platform/message_box.h"

namespace velto {
namespace {

using Field = int CPad::*;

struct Button {
    Field field;
    int keyboard;  // the key that stands for it by default on port 1
};

// In the order of the list of keys.
constexpr Button kButtons[] = {
    {&CPad::left, 203},     // left arrow
    {&CPad::right, 205},    // right arrow
    {&CPad::up, 200},       // up arrow
    {&CPad::down, 208},     // down arrow
    {&CPad::triangle, 32},  // D
    {&CPad::circle, 45},    // X
    {&CPad::cross, 44},     // Z
    {&CPad::square, 31},    // S
    {&CPad::l1, 17},        // W
    {&CPad::l2, 18},        // E
    {&CPad::r1, 19},        // R
    {&CPad::r2, 20},        // T
    {&CPad::start, 47},     // V
    {&CPad::select, 46},    // C
    {&CPad::l3, 16},        // Q
    {&CPad::r3, 21},        // Y
};

constexpr Field kAxes[] = {&CPad::leftAxisX, &CPad::leftAxisY, &CPad::rightAxisX,
                           &CPad::rightAxisY};

// Takes the codes off a list from its head. Reads no further than it was asked to: a list may be
// as long as a line of a file.
class CodeListReader {
  public:
    explicit CodeListReader(std::string_view list) : rest_(list) {}

    int Next() {
        const auto end = std::min(rest_.find(','), rest_.size());
        const int number = NumberOf(rest_.substr(0, end));
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        return number;
    }

  private:
    static int NumberOf(std::string_view token) {
        int number = 0;
        const auto* const end = token.data() + token.size();
        const auto read = std::from_chars(token.data(), end, number);
        const bool plain = read.ec == std::errc() && read.ptr == end && number >= 0;
        return plain ? number : 0;
    }

    std::string_view rest_;
};

// The pad's share of a list in which each port, from the first on, has a code for each field.
void TakeShare(CPad& pad, std::span<const Field> fields, std::string_view list) {
    CodeListReader reader(list);
    for (int port = 1; port <= pad.padNumber; ++port) {
        for (const auto field : fields) pad.*field = reader.Next();
    }
}

void TakeShare(CPad& pad, Field field, std::string_view list) {
    TakeShare(pad, std::span(&field, 1), list);
}

}  // namespace

void CPad::SetNumber(int number) {
    if (number < 1 || number > kPadCount) {
        platform::Report("Invalid Controller");
        return;
    }
    padNumber = number;
}

void CPad::SetDefaults() {
    CPad defaults;
    defaults.padNumber = padNumber;
    if (padNumber == 1) {
        for (const auto& button : kButtons) defaults.*button.field = button.keyboard;
        defaults.padType = kClassicPad;
    }
    *this = defaults;
}

std::string CPad::GetKeyString() const {
    std::string list;
    for (const auto& button : kButtons) AppendCode(list, this->*button.field);
    return list;
}

std::string CPad::GetAxisString() const {
    std::string list;
    for (const auto axis : kAxes) AppendCode(list, this->*axis);
    return list;
}

void CPad::Load(std::string_view keys, std::string_view axes, std::string_view motors,
                std::string_view big_motors, std::string_view small_motors,
                std::string_view types) {
    for (const auto list : {keys, axes, motors, big_motors, small_motors, types}) {
        if (!list.empty()) continue;
        SetDefaults();
        return;
    }
    CodeListReader reader(keys);
    for (const auto& button : kButtons) this->*button.field = reader.Next();
    TakeShare(*this, kAxes, axes);
    TakeShare(*this, &CPad::padType, types);
    TakeShare(*this, &CPad::motorType, motors);
    TakeShare(*this, &CPad::bMotorType, big_motors);
    TakeShare(*this, &CPad::sMotorType, small_motors);
}

void AppendCode(std::string& list, int code) {
    if (!list.empty()) list += ',';
    list += std::to_string(code);
}

}  // namespace velto
