#include "launch/emulator_values.h"

#include <algorithm>

#include "platform/message_box.h"
#include "store/config_file.h"
#include "store/option_table.h"
#include "store/velto_settings.h"

namespace velto {
namespace {

constexpr std::string_view kImagePluginKey = "Software\\Vision Thing\\PSEmu Pro\\CDR\\MoobyCDR";

platform::RegistryWrite StringOf(std::string_view key, std::string_view name,
                                 std::string_view text) {
    return {std::string(platform::kCurrentUser).append(key), std::string(name),
            platform::StringValue(text)};
}

}  // namespace

std::vector<platform::RegistryWrite> EmulatorValues(const OptionTexts& texts, bool imagePlugin) {
    const auto names = EmulatorValueNames();
    std::vector<platform::RegistryWrite> writes(names.size());
    for (const auto& row : OptionTable()) {
        for (const auto& value : row.values) {
            if (value.name.empty()) continue;
            const auto place = std::find(names.begin(), names.end(), value.name) - names.begin();
            writes[static_cast<std::size_t>(place)] =
                StringOf(kEmulatorConfigKey, value.name, value.text(row, texts[row.key]));
        }
    }
    if (imagePlugin) {
        writes.push_back(StringOf(kImagePluginKey, "autorun", texts[Key::imageFileName]));
    }
    return writes;
}

bool WriteEmulatorValues(const std::string& name, std::span<const platform::RegistryWrite> values) {
    const auto written = platform::WriteValues(platform::Registry(), values);
    if (written.ok()) return true;
    platform::Report("Unable to write the settings of " + name + ": " + written.error().text);
    return false;
}

std::string EmulatorArguments(const std::string& commandLine, bool internalIso,
                              const std::string& imageFileName) {
    std::string arguments = commandLine == kUnset ? "" : commandLine;
    if (internalIso) arguments += " -loadbin \"" + imageFileName + '"';
    return arguments;
}

void ReportNotStarted(const std::string& path, const platform::Error& reason) {
    platform::Report("Unable to locate Epsxe at " + path);
    platform::Note("velto: " + reason.subject + ": " + reason.text);
}

std::string WithoutGui(const std::string& arguments) {
    return " -nogui " + arguments;
}

}  // namespace velto
