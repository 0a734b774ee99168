#include "shell/app_startup.h"

#include <array>
#include <string_view>
#include <tuple>
#include <utility>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/line_ends.h"
#include "platform/message_box.h"
#include "platform/registry.h"
#include "platform/replace_file.h"
#include "platform/stored_path.h"
#include "store/borrowed_branch.h"
#include "store/registry_editor.h"

namespace velto {
namespace {

constexpr const char* kFirstLine = "Velto startup Log\n";

// What plug-ins expect to be there.
constexpr std::array<const char*, 5> kPluginKeys = {
    "HKEY_CURRENT_USER\\software\\Vision Thing\\PSEmu Pro\\CDR",
    "HKEY_CURRENT_USER\\software\\Vision Thing\\PSEmu Pro\\GPU",
    "HKEY_CURRENT_USER\\software\\Vision Thing\\PSEmu Pro\\SPU",
    "HKEY_CURRENT_USER\\software\\Vision Thing\\PSEmu Pro\\NET",
    "HKEY_CURRENT_USER\\software\\Vision Thing\\PSEmu Pro\\PAD",
};

// Discs with a file of a name that stands here are left alone by the system's own autoplay.
constexpr const char* kCancelAutoplayKey =
    "HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Explorer\\"
    "AutoplayHandlers\\CancelAutoplay\\Files";

// Libraries of the plug-in folder that are no plug-ins.
constexpr std::array<const char*, 5> kExcludedByDefault = {
    "zlib.dll", "AUDIOW32.DLL", "subTsgMSCD16.dll", "subTsgMSCD32.dll", "kailleraclient.dll"};

// Text that the log file takes; a failure leaves the window's lines.
void AppendToLog(std::string_view text, bool anew) {
    const auto log = platform::Files().OpenLog(platform::HostPath(kStartupLog), anew);
    if (log.ok()) std::ignore = log.value()->Write(platform::ToDiskText(text));
}

}  // namespace

CAppStartup::CAppStartup(std::string configDir, StartupWindow& window)
    : config_dir_(std::move(configDir)), window_(window) {}

void CAppStartup::Run() {
    AppendToLog(kFirstLine, true);
    Log("Velto starting up....");
    if (settings_.IsFirstRunDue()) {
        Log("Registry keys not detected.  Launching 1st time setup...");
        RunFirstSetup();
        Log("Continuing with startup");
    } else {
        Log("Registry keys detected.  Continuing with startup");
    }
    PrepareRegistry();
    if (!settings_.HasExclusionList()) {
        Log("Exclusion list missing or corrupt.  Rebuilding....");
        settings_.SetExclusionList({kExcludedByDefault.begin(), kExcludedByDefault.end()});
    }
    RecoverLeftovers();
    catalogue_.ScanPlugins([this](const std::string& line) { Log(line); });
    Log("System Preparations complete.");
}

void CAppStartup::Log(const std::string& message) {
    AppendToLog(message + "\n", false);
    window_.OnLogLine(message);
}

void CAppStartup::RunFirstSetup() {
    platform::Report(
        "              Welcome to Velto.\n\nAs this is the first time this "
        "application \nhas been run please take a few moments\nto configure "
        "the nesessary settings.",
        "Hello!", platform::BoxIcon::Information);
    window_.RunPathsDialog();
    Log("Program settings written to registry.");
    settings_.SetFirstRunDone();
    Log("1st time setup complete.");
}

void CAppStartup::PrepareRegistry() {
    Log("Checking and updating plugin settings if nessesary.");
    auto& registry = platform::Registry();
    for (const auto* key : kPluginKeys) std::ignore = registry.CreateKey(key);
    const auto files = registry.CreateKey(kCancelAutoplayKey);
    Log("Disabling native windows autoplay support for psx cds.");
    if (files.ok()) std::ignore = files.value()->Set("system.cnf", platform::StringValue(""));
}

// What a launch or a plug-in's configuration left when it was cut off.
void CAppStartup::RecoverLeftovers() {
    platform::SweepTemporaries(platform::Files(), config_dir_);
    RecoverBackups();
    if (FindsLeftover("plugins.tmp", "plugins.tmp detected... deleteing.")) {
        DeleteLeftover("plugins.tmp");
    }
}

// The emulator's own settings stay as they are; the plug-ins' come back. A run that outlives the
// editor that began it still needs both of its backups.
void CAppStartup::RecoverBackups() {
    const auto turn = BranchTurn::Take(config_dir_);
    if (!turn) return;
    if (FindsLeftover(kMainBackup, "main.bak detected.  Deleteing...")) DeleteLeftover(kMainBackup);
    if (FindsLeftover(kPluginsBackup,
                      "plugins.bak detected.  Now resetting registry and deleteing the file")) {
        const auto path = platform::JoinPath(config_dir_, kPluginsBackup);
        const auto info = platform::Files().Info(path);
        const bool empty = info.ok() && info.value().size == 0;
        if (empty || RestoreFile(kPluginsBackup, config_dir_, kPluginsScope) == 0) {
            DiscardBackup(path);
        }
    }
}

bool CAppStartup::FindsLeftover(const char* file, const char* line) {
    if (platform::FindFile(config_dir_, file) != file) return false;
    Log(line);
    return true;
}

void CAppStartup::DeleteLeftover(const char* file) {
    std::ignore = platform::Files().Remove(platform::JoinPath(config_dir_, file));
}

}  // namespace velto
