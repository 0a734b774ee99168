#include "store/option_table.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "store/config_file.h"

namespace velto {
namespace {

using enum ValueKind;
using enum FileGeneration;

constexpr std::optional<std::string_view> kNone;
constexpr std::string_view kZeros4 = "0,0,0,0";
constexpr std::string_view kZeros16 = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";
// The keyboard of pad 1, as the emulator's first versions had it.
constexpr std::string_view kFirstKeys1 = "203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21";

// clang-format off
constexpr std::array<KeyRow, kKeyCount> kTable = {{
    // key, name, kind, since, newFile, onLoad, emulatorValue, directAbsent, directNeeds
    {Key::fileVersion, "fileVersion", Text, First, kFileVersion, kFileVersion, "", "", true},
    {Key::fileGroup, "fileGroup", Text, First, kNone, "My Epsxe", "", "", false},
    {Key::magicCFG, "magicCFG", FlagIfTrue, First, kNone, "false", "", "", false},
    {Key::gpuFileName, "gpuFileName", Text, First, kUnset, kUnset, "", "", true},
    {Key::enableSound, "enableSound", FlagUnlessFalse, First, "true", "true", "", "", true},
    {Key::enableCDDA, "enableCDDA", FlagUnlessFalse, First, "true", "true", "", "", true},
    {Key::enableXA, "enableXA", FlagUnlessFalse, First, "true", "true", "", "", true},
    {Key::enableSpuIRQ, "enableSpuIRQ", FlagIfTrue, First, "false", "false", "", "", true},
    {Key::spuFileName, "spuFileName", Text, First, kUnset, kUnset, "", "", true},
    {Key::cdrFileName, "cdrFileName", Text, First, kUnset, kUnset, "", "", true},
    {Key::imageFileName, "imageFileName", Text, ImageFile, kUnset, kUnset, "", kUnset, true},
    {Key::driveLetter, "driveLetter", Text, First, "0", "0", "", "", true},
    {Key::region, "region", Text, First, "Autodetect", "Autodetect", "", "", true},
    {Key::enablePPF, "enablePPF", FlagIfTrue, First, "false", "false", "", "", true},
    {Key::readSubChannel, "readSubChannel", FlagIfTrue, First, "false", "false", "", "", true},
    {Key::storeSubChannel, "storeSubChannel", FlagIfTrue, First, "false", "false", "", "", true},
    {Key::storeSubChannelLG, "storeSubChannelLG", FlagIfTrue, First, "false", "false", "", "", true},
    {Key::netFileName, "netFileName", Text, First, kUnset, kUnset, "", "", true},
    {Key::memcard1, "memcard1", Text, First, kUnset, kUnset, "", "", true},
    {Key::memcard2, "memcard2", Text, First, kUnset, kUnset, "", "", true},
    {Key::keys1, "keys1", Text, Pads, kNone, kNone, "Keys1", kFirstKeys1, true},
    {Key::keys2, "keys2", Text, Pads, kNone, kNone, "Keys2", kZeros16, true},
    {Key::keys3, "keys3", Text, Current, kNone, kNone, "Keys3", kZeros16, true},
    {Key::keys4, "keys4", Text, Current, kNone, kNone, "Keys4", kZeros16, true},
    {Key::padAxis, "padAxis", Text, Pads, kNone, kZeros16, "GamepadAxis", kZeros16, true},
    {Key::padType, "padType", Text, Pads, kNone, "1,0,0,0", "GamepadType", kZeros4, true},
    {Key::motorType, "motorType", Text, Pads, kNone, kZeros4, "GamepadMotorType", kZeros4, true},
    {Key::bMotorType, "bMotorType", Text, Pads, kNone, kZeros4, "GamepadBMotorType", kZeros4, true},
    {Key::sMotorType, "sMotorType", Text, Pads, kNone, kZeros4, "GamepadSMotorType", kZeros4, true},
    {Key::multiTap, "multiTap", FlagIfTrue, Current, kNone, "false", "Multitap1", "false", true},
    {Key::bios, "bios", Text, First, kUnset, kUnset, "", "", true},
    {Key::commandLine, "commandLine", Text, First, kUnset, kUnset, "", "", true},
    {Key::autoplay, "autoplay", FlagIfTrue, First, "false", "false", "", "", true},
    {Key::psxIdExt, "psxIdExt", List, Pads, kUnset, kUnset, "", "", false},
    {Key::psxid, "psxid", Text, First, kUnset, kUnset, "", "", false},
}};
// clang-format on

constexpr bool IsInKeyOrder() {
    for (std::size_t i = 0; i < kTable.size(); ++i) {
        if (kTable[i].key != static_cast<Key>(i)) return false;
    }
    return true;
}
static_assert(IsInKeyOrder(), "RowOf finds a row by its place");

struct Version {
    std::string_view text;
    FileGeneration generation;
};

constexpr Version kEarlierVersions[] = {
    {"1.5.152", First},      {"1.51.152", First},      {"1.56.152", Pads},
    {"1.57.152", Pads},      {"1.58.152", Pads},       {"1.59.152", ImageFile},
    {"1.60.152", ImageFile}, {"1.60.152a", ImageFile}, {"1.61.152", ImageFile},
    {"1.62.152", ImageFile}, {"1.63.152", ImageFile},
};

}  // namespace

FileGeneration GenerationOf(std::string_view fileVersion) {
    const auto* const known =
        std::find_if(std::begin(kEarlierVersions), std::end(kEarlierVersions),
                     [&](const Version& version) { return version.text == fileVersion; });
    return known == std::end(kEarlierVersions) ? Current : known->generation;
}

std::span<const KeyRow, kKeyCount> KeyTable() {
    return kTable;
}

const KeyRow& RowOf(Key key) {
    return kTable[static_cast<std::size_t>(key)];
}

bool Carries(FileGeneration generation, const KeyRow& row) {
    return row.since <= generation;
}

bool FlagFromText(const KeyRow& row, std::string_view text) {
    return row.kind == FlagUnlessFalse ? text != "false" : text == "true";
}

}  // namespace velto
