#include "launch/direct_run.h"

#include <array>
#include <tuple>
#include <utility>

#include "platform/ascii.h"
#include "platform/environment.h"
#include "platform/file_search.h"
#include "platform/message_box.h"
#include "platform/process.h"
#include "platform/stored_path.h"
#include "store/option_table.h"
#include "store/registry_editor.h"
#include "store/velto_settings.h"

namespace velto {
namespace {

// The texts of a file's options, each found by its key.
class OptionTexts {
  public:
    std::string& operator[](Key key) { return texts_[static_cast<std::size_t>(key)]; }
    const std::string& operator[](Key key) const { return texts_[static_cast<std::size_t>(key)]; }
    bool Flag(Key key) const { return FlagFromText(RowOf(key), (*this)[key]); }

  private:
    std::array<std::string, kKeyCount> texts_;
};

// More than any path or list needs, and less than a registry string or a program's argument holds.
constexpr std::size_t kLongestOption = 0xFFFF;

// Whether the emulator can be given the text, by its registry and on its command line.
bool IsUsable(const std::string& text) {
    return !text.empty() && text.size() <= kLongestOption && text.find('\0') == std::string::npos;
}

// Nothing if the file is corrupted.
std::optional<OptionTexts> ReadOptionTexts(const CConfigFile& file) {
    const auto generation = GenerationOf(file.ReadEntry(RowOf(Key::fileVersion).name));
    OptionTexts texts;
    for (const auto& row : KeyTable()) {
        if (!row.directNeeds) continue;
        auto& text = texts[row.key];
        text = Carries(generation, row) ? file.ReadEntry(row.name) : std::string(row.directAbsent);
        if (!IsUsable(text)) return {};
    }
    return texts;
}

EmulatorSettings SettingsFrom(const OptionTexts& texts) {
    EmulatorSettings settings;
    settings.enablePPF = texts.Flag(Key::enablePPF);
    settings.bios = texts[Key::bios];
    settings.driveLetter = texts[Key::driveLetter].front();
    settings.cdrFileName = texts[Key::cdrFileName];
    settings.region = texts[Key::region];
    settings.memcard1 = texts[Key::memcard1];
    settings.memcard2 = texts[Key::memcard2];
    settings.enableCDDA = texts.Flag(Key::enableCDDA);
    settings.spuFileName = texts[Key::spuFileName];
    settings.enableSpuIRQ = texts.Flag(Key::enableSpuIRQ);
    settings.enableXA = texts.Flag(Key::enableXA);
    settings.storeSubChannel = texts.Flag(Key::storeSubChannel);
    settings.storeSubChannelLG = texts.Flag(Key::storeSubChannelLG);
    settings.readSubChannel = texts.Flag(Key::readSubChannel);
    settings.gpuFileName = texts[Key::gpuFileName];
    settings.netFileName = texts[Key::netFileName];
    settings.padAxis = texts[Key::padAxis];
    settings.bMotorType = texts[Key::bMotorType];
    settings.motorType = texts[Key::motorType];
    settings.sMotorType = texts[Key::sMotorType];
    settings.padType = texts[Key::padType];
    settings.keys1 = texts[Key::keys1];
    settings.keys2 = texts[Key::keys2];
    settings.keys3 = texts[Key::keys3];
    settings.keys4 = texts[Key::keys4];
    settings.multiTap = texts.Flag(Key::multiTap);
    settings.imageFileName = texts[Key::imageFileName];
    // By the file's name: there is no plug-in catalogue here.
    settings.imagePlugin = platform::Lower(settings.cdrFileName) == "cdrmooby2.dll";
    return settings;
}

// Whether the file is there, in exactly this spelling; reports if it isn't.
bool IsThere(const std::string& folder, const std::string& file) {
    const auto found = platform::FindFile(folder, file);
    if (found == file) return true;
    auto text = file + " does not exist";
    if (found) text += ". Remember that names are case sensitive.";
    platform::Report(text, "File not found");
    return false;
}

bool StartEmulator(const CVeltoSettings& settings, const std::string& arguments) {
    const auto path = settings.GetEmulatorPath();
    platform::ProcessRequest request;
    request.file = platform::HostPath(path);
    request.parameters = arguments;
    request.folder = platform::HostPath(settings.GetEmulatorFolder());
    request.show =
        settings.IsLogWindowOn() ? platform::ShowState::Hidden : platform::ShowState::Shown;
    if (platform::Processes().Start(request).ok()) return true;
    platform::Report("Unable to locate Epsxe at " + path);
    return false;
}

}  // namespace

std::optional<DirectConfig> ReadDirectConfig(const CConfigFile& file) {
    const auto texts = ReadOptionTexts(file);
    if (!texts) return {};
    DirectConfig config;
    config.settings = SettingsFrom(*texts);
    config.commandLine = (*texts)[Key::commandLine];
    config.internalIso = platform::Upper(config.settings.cdrFileName) == "ISO";
    return config;
}

bool RunDirect(const std::string& name) {
    const auto folder = platform::HostEnvironment().ConfigFolder();
    const auto file = name + std::string(kConfigEnding);
    if (!IsThere(folder, file)) return false;

    CVeltoSettings settings;
    RestoreFile(file, folder);

    // A file that has vanished by now has no keys.
    auto opened = CConfigFile::Open(platform::JoinPath(folder, file));
    const auto text = opened.ok() ? std::move(opened).value() : CConfigFile();
    if (text.ReadEntry("magicCFG") == "true") {
        platform::Report(
            "Personal preferences not verified.\n  You need to run this file via the editor at "
            "least once before using command lines.",
            "MagicCFG", platform::BoxIcon::None);
        return false;
    }
    const auto config = ReadDirectConfig(text);
    if (!config) {
        platform::Report("File Corrupted.  Please repair then try again", "File Corrupted");
        return false;
    }

    // If they can't be written, the emulator has its former ones.
    std::ignore = platform::WriteValues(platform::Registry(), EmulatorValues(config->settings));
    return StartEmulator(settings,
                         WithoutGui(EmulatorArguments(config->commandLine, config->internalIso,
                                                      config->settings.imageFileName)));
}

}  // namespace velto
