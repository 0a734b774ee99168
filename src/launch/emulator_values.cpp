#include "launch/emulator_values.h"

#include "platform/ascii.h"
#include "store/config_file.h"
#include "store/velto_settings.h"

namespace velto {
namespace {

using platform::Upper;
using Settings = EmulatorSettings;

constexpr std::string_view kImagePluginKey = "Software\\Vision Thing\\PSEmu Pro\\CDR\\MoobyCDR";

std::string OneOrZero(bool on) {
    return on ? "1" : "0";
}

std::string DriveCode(char letter) {
    constexpr int kSevenBits = 0x7F;
    return letter == '0' ? "0" : std::to_string(static_cast<unsigned char>(letter) & kSevenBits);
}

std::string CountryCode(const std::string& region) {
    if (region == "Autodetect") return "255";
    return region == "NTSC" ? "0" : "1";
}

struct Row {
    std::string_view value;
    std::string (*text)(const Settings&);
};

// clang-format off
constexpr Row kTable[] = {
    {"AutoPpfLoad", [](const Settings& s) { return std::string(s.enablePPF ? "0" : "255"); }},
    {"BiosName", [](const Settings& s) { return s.bios; }},
    {"CdromLetter", [](const Settings& s) { return DriveCode(s.driveLetter); }},
    {"CdromPlugin", [](const Settings& s) { return Upper(s.cdrFileName); }},
    {"Country", [](const Settings& s) { return CountryCode(s.region); }},
    {"Memcard1", [](const Settings& s) { return s.memcard1; }},
    {"Memcard2", [](const Settings& s) { return s.memcard2; }},
    {"SoundCDDA", [](const Settings& s) { return OneOrZero(s.enableCDDA); }},
    {"SoundPlugin", [](const Settings& s) { return Upper(s.spuFileName); }},
    {"SoundSpuIrq", [](const Settings& s) { return OneOrZero(s.enableSpuIRQ); }},
    {"SoundXA", [](const Settings& s) { return OneOrZero(s.enableXA); }},
    {"SubchannelW2kCaching", [](const Settings& s) { return OneOrZero(s.storeSubChannel); }},
    {"SubchannelW2kCachingLG", [](const Settings& s) { return OneOrZero(s.storeSubChannelLG); }},
    {"SubchannelW2kCdromEnabled", [](const Settings& s) { return OneOrZero(s.readSubChannel); }},
    {"SubchannelW9xCaching", [](const Settings& s) { return OneOrZero(s.storeSubChannel); }},
    {"SubchannelW9xCachingLG", [](const Settings& s) { return OneOrZero(s.storeSubChannelLG); }},
    {"SubchannelW9xCdromEnabled", [](const Settings& s) { return OneOrZero(s.readSubChannel); }},
    {"VideoPlugin", [](const Settings& s) { return Upper(s.gpuFileName); }},
    {"NetPlugin", [](const Settings& s) { return s.netFileName == kUnset ? "DISABLED" : Upper(s.netFileName); }},
    {"GamepadAxis", [](const Settings& s) { return s.padAxis; }},
    {"GamepadBMotorType", [](const Settings& s) { return s.bMotorType; }},
    {"GamepadMotorType", [](const Settings& s) { return s.motorType; }},
    {"GamepadSMotorType", [](const Settings& s) { return s.sMotorType; }},
    {"GamepadType", [](const Settings& s) { return s.padType; }},
    {"Keys1", [](const Settings& s) { return s.keys1; }},
    {"Keys2", [](const Settings& s) { return s.keys2; }},
    {"Keys3", [](const Settings& s) { return s.keys3; }},
    {"Keys4", [](const Settings& s) { return s.keys4; }},
    {"Multitap1", [](const Settings& s) { return OneOrZero(s.multiTap); }},
};
// clang-format on

platform::RegistryWrite StringOf(std::string_view key, std::string_view name,
                                 std::string_view text) {
    return {std::string(platform::kCurrentUser).append(key), std::string(name),
            platform::StringValue(text)};
}

}  // namespace

std::vector<std::string_view> EmulatorValueNames() {
    std::vector<std::string_view> names;
    for (const auto& row : kTable) names.push_back(row.value);
    return names;
}

std::vector<platform::RegistryWrite> EmulatorValues(const EmulatorSettings& settings) {
    std::vector<platform::RegistryWrite> writes;
    for (const auto& row : kTable) {
        writes.push_back(StringOf(kEmulatorConfigKey, row.value, row.text(settings)));
    }
    if (settings.imagePlugin) {
        writes.push_back(StringOf(kImagePluginKey, "autorun", settings.imageFileName));
    }
    return writes;
}

std::string EmulatorArguments(const std::string& commandLine, bool internalIso,
                              const std::string& imageFileName) {
    std::string arguments = commandLine == kUnset ? "" : commandLine;
    if (internalIso) arguments += " -loadbin \"" + imageFileName + '"';
    return arguments;
}

std::string WithoutGui(const std::string& arguments) {
    return " -nogui " + arguments;
}

}  // namespace velto
