#include "launch/direct_run.h"

#include <utility>

#include "launch/emulator_values.h"
#include "platform/ascii.h"
#include "platform/environment.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/stored_path.h"
#include "store/config_folder.h"
#include "store/option_table.h"
#include "store/registry_editor.h"
#include "store/velto_settings.h"

namespace velto {
namespace {

// More than any path or list needs, and less than a registry string or a program's argument holds.
constexpr std::size_t kLongestOption = 0xFFFF;

// Whether the emulator can be given the text, by its registry and on its command line.
bool IsUsable(const std::string& text) {
    return !text.empty() && text.size() <= kLongestOption && text.find('\0') == std::string::npos;
}

// Nothing if the file is corrupted.
std::optional<OptionTexts> ReadTexts(const CConfigFile& file) {
    const auto generation = GenerationOf(file.ReadEntry(RowOf(Key::fileVersion).name));
    OptionTexts texts;
    for (const auto& row : OptionTable()) {
        if (!row.directNeeds) continue;
        auto& text = texts[row.key];
        if (Carries(generation, row)) {
            text = file.ReadEntry(row.name);
        } else {
            text = row.directBefore.empty() ? row.standard : row.directBefore;
        }
        if (!IsUsable(text)) return {};
    }
    return texts;
}

bool StartEmulator(const CVeltoSettings& settings, const std::string& arguments) {
    const auto path = settings.GetEmulatorPath();
    platform::ProcessRequest request;
    request.file = platform::HostPath(path);
    request.parameters = arguments;
    request.folder = platform::HostPath(settings.GetEmulatorFolder());
    request.show =
        settings.IsLogWindowOn() ? platform::ShowState::Hidden : platform::ShowState::Shown;
    const auto started = platform::Processes().Start(request);
    if (!started.ok()) ReportNotStarted(path, started.error());
    return started.ok();
}

}  // namespace

std::optional<DirectConfig> ReadDirectConfig(const CConfigFile& file) {
    const auto texts = ReadTexts(file);
    if (!texts) return {};
    // By the file's name: there is no plug-in catalogue here.
    const auto& driver = (*texts)[Key::cdrFileName];
    const bool image_plugin = platform::Lower(driver) == "cdrmooby2.dll";
    const bool internal_iso = platform::Upper(driver) == "ISO";
    return DirectConfig{EmulatorValues(*texts, image_plugin),
                        WithoutGui(EmulatorArguments((*texts)[Key::commandLine], internal_iso,
                                                     (*texts)[Key::imageFileName]))};
}

void ReportPortable() {
    platform::Report(
        "Personal preferences not verified.\n  You need to run this file via the editor at least "
        "once before using command lines.",
        "MagicCFG", platform::BoxIcon::None);
}

bool RunDirect(const std::string& name) {
    const ConfigFolder folder(platform::HostEnvironment().ConfigFolder());
    if (!folder.CheckIsThere(name, ConfigFolder::FileOf(name))) return false;

    CVeltoSettings settings;
    const auto file = ConfigFolder::FileOf(name);
    RestoreFile(file, folder.path(), kConfigurationScope);

    // A file that has vanished by now has no keys.
    auto opened = CConfigFile::Open(folder.PathOf(file));
    if (!opened.ok() && opened.error().kind != platform::ErrorKind::NotFound) {
        platform::Report("Unable to read " + file + ": " + opened.error().text);
        return false;
    }
    const auto text = opened.ok() ? std::move(opened).value() : CConfigFile();
    if (IsPortable(text)) {
        ReportPortable();
        return false;
    }
    const auto config = ReadDirectConfig(text);
    if (!config) {
        platform::Report("File Corrupted.  Please repair then try again", "File Corrupted");
        return false;
    }

    return WriteEmulatorValues(name, config->values) && StartEmulator(settings, config->arguments);
}

}  // namespace velto
