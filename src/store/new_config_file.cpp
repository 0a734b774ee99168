#include "store/new_config_file.h"

#include "platform/registry.h"
#include "store/config_layout.h"
#include "store/option_table.h"
#include "store/velto_settings.h"

namespace velto {
namespace {

// The text of a value as the emulator left it; empty if it can't be had.
std::string EmulatorText(std::string_view value_name) {
    const auto key = platform::Registry().OpenKey(
        std::string(platform::kCurrentUser).append(kEmulatorConfigKey));
    if (!key.ok()) return {};
    return platform::ReadText(*key.value(), value_name, platform::kTextBuffer).value_or("");
}

}  // namespace

CConfigFile NewConfigFile(const std::string& group) {
    OptionTexts texts;
    for (const auto& row : OptionTable()) {
        texts[row.key] = row.fromEmulator == nullptr
                             ? std::string(row.standard)
                             : row.fromEmulator(EmulatorText(row.values[0].name));
    }
    texts[Key::fileGroup] = group;
    constexpr auto kBetween = ";#\n";
    return LayOut(
        texts, FileForm::New,
        PluginBanner("GPU") + kBetween + PluginBanner("CDR") + kBetween + PluginBanner("SPU"));
}

}  // namespace velto
