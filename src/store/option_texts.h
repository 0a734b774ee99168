// The options of a configuration file as texts, each found by its key: what every reader, writer
// and translator of configurations hands on.
#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace velto {

// Named as the keys are spelled in a file, and in the order in which it is written.
enum class Key {
    fileVersion,
    fileGroup,
    magicCFG,
    gpuFileName,
    enableSound,
    enableCDDA,
    enableXA,
    enableSpuIRQ,
    spuFileName,
    cdrFileName,
    imageFileName,
    driveLetter,
    region,
    enablePPF,
    readSubChannel,
    storeSubChannel,
    storeSubChannelLG,
    netFileName,
    memcard1,
    memcard2,
    keys1,
    keys2,
    keys3,
    keys4,
    padAxis,
    padType,
    motorType,
    bMotorType,
    sMotorType,
    multiTap,
    bios,
    commandLine,
    autoplay,
    psxIdExt,
    psxid,
};

inline constexpr std::size_t kKeyCount = static_cast<std::size_t>(Key::psxid) + 1;

// An empty text is that of an option that isn't there.
class OptionTexts {
  public:
    std::string& operator[](Key key) { return texts_[static_cast<std::size_t>(key)]; }
    const std::string& operator[](Key key) const { return texts_[static_cast<std::size_t>(key)]; }

  private:
    std::array<std::string, kKeyCount> texts_;
};

}  // namespace velto
