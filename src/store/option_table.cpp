#include "store/option_table.h"

#include <algorithm>

#include "platform/ascii.h"
#include "store/option_members.h"

namespace velto {
namespace {

using option_members::kOldDiscId;
using option_members::kOwn;
using option_members::kPad;
using option_members::kPadList;
using platform::Upper;
using enum FileGeneration;
using enum FileSection;
using enum IfMissing;

constexpr std::string_view kZeros4 = "0,0,0,0";
constexpr std::string_view kZeros16 = "0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";
// The defaults of pad 1: the keyboard, as the emulator's first versions had it.
constexpr std::string_view kKeyboard = "203,205,200,208,32,45,44,31,17,18,19,20,47,46,16,21";

// What the emulator makes of an option.

std::string Same(const OptionRow& /*row*/, const std::string& option) {
    return option;
}
std::string InCapitals(const OptionRow& /*row*/, const std::string& option) {
    return Upper(option);
}
std::string NetPlugin(const OptionRow& /*row*/, const std::string& option) {
    const auto name = Upper(option);
    return name == kUnset ? "DISABLED" : name;
}
std::string OneOrZero(const OptionRow& row, const std::string& option) {
    return IsOn(row, option) ? "1" : "0";
}
// Loading a patch is the smaller number.
std::string PpfCode(const OptionRow& row, const std::string& option) {
    return IsOn(row, option) ? "0" : "255";
}
// "0" for the first drive, else the code of the letter.
std::string DriveCode(const OptionRow& /*row*/, const std::string& option) {
    constexpr int kSevenBits = 0x7F;
    const auto letter = static_cast<unsigned char>(option.front());
    return letter == '0' ? "0" : std::to_string(letter & kSevenBits);
}
std::string CountryCode(const OptionRow& /*row*/, const std::string& option) {
    if (option == "Autodetect") return "255";
    return option == "NTSC" ? "0" : "1";
}

// And back, for a new file.

std::string AsItIs(const std::string& value) {
    return value;
}
std::string TrueIfOne(const std::string& value) {
    return value == "1" ? "true" : "false";
}

// An option's key, its name in a file and, where it has one of its own, its member of the record
// are spelled alike: written once, none can be another option's.
#define NAMED(option) .key = Key::option, .name = #option
#define OPTION(option) NAMED(option), .member = kOwn<&ConfigRecord::option>

// clang-format off
constexpr std::array<OptionRow, kKeyCount> kTable = {{
    {OPTION(fileVersion), .section = Internals, .standard = kFileVersion, .ifMissing = Quiet},
    {OPTION(fileGroup), .section = Internals, .standard = kRootGroup, .ifMissing = Quiet,
     .directNeeds = false},
    {NAMED(magicCFG), .section = PortableMark, .standard = "", .ifMissing = Accept,
     .directNeeds = false},

    {OPTION(gpuFileName), .section = Graphics, .standard = kUnset,
     .values = {{"VideoPlugin", InCapitals}}},

    {OPTION(enableSound), .section = Sound, .standard = "true"},
    {OPTION(enableCDDA), .section = Sound, .standard = "true",
     .values = {{"SoundCDDA", OneOrZero}}},
    {OPTION(enableXA), .section = Sound, .standard = "true", .values = {{"SoundXA", OneOrZero}}},
    {OPTION(enableSpuIRQ), .section = Sound, .standard = "false",
     .values = {{"SoundSpuIrq", OneOrZero}}},
    {OPTION(spuFileName), .section = Sound, .standard = kUnset,
     .values = {{"SoundPlugin", InCapitals}}},

    {OPTION(cdrFileName), .section = Cd, .standard = kUnset,
     .values = {{"CdromPlugin", InCapitals}}},
    {OPTION(imageFileName), .section = Cd, .since = ImageFile, .standard = kUnset,
     .ifMissing = Quiet},
    {OPTION(driveLetter), .section = Cd, .standard = "0", .values = {{"CdromLetter", DriveCode}}},
    {OPTION(region), .section = Cd, .standard = "Autodetect", .values = {{"Country", CountryCode}}},
    {OPTION(enablePPF), .section = Cd, .standard = "false", .values = {{"AutoPpfLoad", PpfCode}}},
    {OPTION(readSubChannel), .section = Cd, .standard = "false",
     .values = {{"SubchannelW2kCdromEnabled", OneOrZero},
                {"SubchannelW9xCdromEnabled", OneOrZero}}},
    {OPTION(storeSubChannel), .section = Cd, .standard = "false",
     .values = {{"SubchannelW2kCaching", OneOrZero}, {"SubchannelW9xCaching", OneOrZero}}},
    {OPTION(storeSubChannelLG), .section = Cd, .standard = "false",
     .values = {{"SubchannelW2kCachingLG", OneOrZero}, {"SubchannelW9xCachingLG", OneOrZero}}},

    {OPTION(netFileName), .section = Net, .standard = kUnset, .values = {{"NetPlugin", NetPlugin}}},

    {OPTION(memcard1), .section = MemoryCards, .standard = kUnset, .values = {{"Memcard1", Same}}},
    {OPTION(memcard2), .section = MemoryCards, .standard = kUnset, .values = {{"Memcard2", Same}}},

    {NAMED(keys1), .member = kPad<1>, .section = Gamepad, .since = Pads, .standard = kKeyboard,
     .values = {{"Keys1", Same}}, .fromEmulator = AsItIs, .ifMissing = Quiet},
    {NAMED(keys2), .member = kPad<2>, .section = Gamepad, .since = Pads, .standard = kZeros16,
     .values = {{"Keys2", Same}}, .fromEmulator = AsItIs, .ifMissing = Quiet},
    {NAMED(keys3), .member = kPad<3>, .section = Gamepad, .since = Current, .standard = kZeros16,
     .values = {{"Keys3", Same}}, .fromEmulator = AsItIs, .ifMissing = Quiet},
    {NAMED(keys4), .member = kPad<4>, .section = Gamepad, .since = Current, .standard = kZeros16,
     .values = {{"Keys4", Same}}, .fromEmulator = AsItIs, .ifMissing = Quiet},
    {NAMED(padAxis), .member = kPadList<&CPadSet::GetAxisString>, .section = Gamepad,
     .since = Pads, .standard = kZeros16, .values = {{"GamepadAxis", Same}},
     .fromEmulator = AsItIs, .ifMissing = Quiet},
    {NAMED(padType), .member = kPadList<&CPadSet::GetTypeString>, .section = Gamepad,
     .since = Pads, .standard = "1,0,0,0", .values = {{"GamepadType", Same}},
     .fromEmulator = AsItIs, .ifMissing = Quiet, .directBefore = kZeros4},
    {NAMED(motorType), .member = kPadList<&CPadSet::GetMotorString>, .section = Gamepad,
     .since = Pads, .standard = kZeros4, .values = {{"GamepadMotorType", Same}},
     .fromEmulator = AsItIs, .ifMissing = Quiet},
    {NAMED(bMotorType), .member = kPadList<&CPadSet::GetBMotorString>, .section = Gamepad,
     .since = Pads, .standard = kZeros4, .values = {{"GamepadBMotorType", Same}},
     .fromEmulator = AsItIs, .ifMissing = Quiet},
    {NAMED(sMotorType), .member = kPadList<&CPadSet::GetSMotorString>, .section = Gamepad,
     .since = Pads, .standard = kZeros4, .values = {{"GamepadSMotorType", Same}},
     .fromEmulator = AsItIs, .ifMissing = Quiet},
    {OPTION(multiTap), .section = Gamepad, .since = Current, .standard = "false",
     .values = {{"Multitap1", OneOrZero}}, .fromEmulator = TrueIfOne, .ifMissing = Quiet},

    {OPTION(bios), .section = Misc, .standard = kUnset, .values = {{"BiosName", Same}}},
    {OPTION(commandLine), .section = Misc, .standard = kUnset},
    {OPTION(autoplay), .section = Misc, .standard = "false"},
    {OPTION(psxIdExt), .section = Misc, .since = Pads, .standard = kUnset, .directNeeds = false},

    {NAMED(psxid), .member = kOldDiscId, .section = Obsolete, .standard = kUnset,
     .ifMissing = Accept, .directNeeds = false},
}};
// clang-format on
#undef OPTION
#undef NAMED

constexpr bool IsInKeyOrder() {
    for (std::size_t i = 0; i < kTable.size(); ++i) {
        if (kTable[i].key != static_cast<Key>(i)) return false;
    }
    return true;
}
static_assert(IsInKeyOrder(), "RowOf finds a row by its place");

// The order in which the emulator itself writes them.
constexpr std::string_view kValueNames[] = {
    "AutoPpfLoad",
    "BiosName",
    "CdromLetter",
    "CdromPlugin",
    "Country",
    "Memcard1",
    "Memcard2",
    "SoundCDDA",
    "SoundPlugin",
    "SoundSpuIrq",
    "SoundXA",
    "SubchannelW2kCaching",
    "SubchannelW2kCachingLG",
    "SubchannelW2kCdromEnabled",
    "SubchannelW9xCaching",
    "SubchannelW9xCachingLG",
    "SubchannelW9xCdromEnabled",
    "VideoPlugin",
    "NetPlugin",
    "GamepadAxis",
    "GamepadBMotorType",
    "GamepadMotorType",
    "GamepadSMotorType",
    "GamepadType",
    "Keys1",
    "Keys2",
    "Keys3",
    "Keys4",
    "Multitap1",
};

constexpr std::size_t CountValues(std::string_view name) {
    std::size_t count = 0;
    for (const auto& row : kTable) {
        for (const auto& value : row.values) count += value.name == name ? 1U : 0U;
    }
    return count;
}
static_assert(std::all_of(std::begin(kValueNames), std::end(kValueNames),
                          [](std::string_view name) { return CountValues(name) == 1; }) &&
                  CountValues("") + std::size(kValueNames) == kKeyCount * kMostValues,
              "each of the emulator's values comes from one option");

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

std::span<const OptionRow, kKeyCount> OptionTable() {
    return kTable;
}

const OptionRow& RowOf(Key key) {
    return kTable[static_cast<std::size_t>(key)];
}

std::span<const std::string_view> EmulatorValueNames() {
    return kValueNames;
}

bool Carries(FileGeneration generation, const OptionRow& row) {
    return row.since <= generation;
}

bool IsOn(const OptionRow& row, std::string_view text) {
    return row.standard == "true" ? text != "false" : text == "true";
}

}  // namespace velto
