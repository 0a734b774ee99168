#include "shell/main_frame.h"

#include <utility>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/stored_path.h"
#include "shell/tree/copy_config.h"

namespace velto {
namespace {

struct ToggleRow {
    Command command;
    bool (CVeltoSettings::*read)() const;
    void (CVeltoSettings::*write)(bool);
};

// "Bypass Epsxe's Gui" is written by its own rule.
constexpr ToggleRow kToggles[] = {
    {Command::LogWindow, &CVeltoSettings::IsLogWindowOn, &CVeltoSettings::SetLogWindow},
    {Command::BypassGui, &CVeltoSettings::IsGuiBypassed, &CVeltoSettings::SetGuiBypassed},
    {Command::ShowOnStart, &CVeltoSettings::IsShownOnLoad, &CVeltoSettings::SetShownOnLoad},
    {Command::AltDetect, &CVeltoSettings::IsAltDetect, &CVeltoSettings::SetAltDetect},
    {Command::ToolBar, &CVeltoSettings::IsToolBarOn, &CVeltoSettings::SetToolBarOn},
    {Command::StatusBar, &CVeltoSettings::IsStatusBarOn, &CVeltoSettings::SetStatusBarOn},
};

const ToggleRow* FindToggle(Command command) {
    for (const auto& row : kToggles) {
        if (row.command == command) return &row;
    }
    return nullptr;
}

}  // namespace

CMainFrame::CMainFrame(std::string configDir, CPluginCatalogue& catalogue, LaunchCycle& launch,
                       PageTable pages, TreeWindow& tree_window, FrameWindow& window)
    : catalogue_(catalogue),
      launch_(launch),
      window_(window),
      document_(std::move(configDir), *this),
      tree_(document_, tree_window, pages) {}

void CMainFrame::OnCreate() {
    ShowToggles();
    tree_.OnUpdate();
}

// The emulator's own settings are what they were before the run, the log window's among them.
void CMainFrame::OnRunEnded() {
    window_.ShowRunning(launch_.Running());
    ShowToggles();
}

void CMainFrame::ShowToggles() {
    for (const auto& row : kToggles) window_.SetChecked(row.command, (settings.*row.read)());
}

WindowPlace CMainFrame::StoredPlace() const {
    return {settings.GetWindowSize(), settings.GetWindowPos()};
}

std::string CMainFrame::TrayIconFile() const {
    constexpr std::size_t kLargestIcon = 4 << 20;
    const auto stored = settings.GetIconFile();
    if (stored.empty()) return {};
    auto file = platform::ReadWhole(platform::Files(), platform::HostPath(stored), kLargestIcon);
    return file.ok() ? std::move(file).value() : std::string();
}

void CMainFrame::Do(Command command) {
    switch (command) {
        case Command::NewConfiguration:
            return OnNewConfig();
        case Command::NewGroup:
            return OnNewGroup();
        case Command::CopyConfiguration:
            return OnCopy();
        case Command::Delete:
            return tree_.OnDelete();
        case Command::HideEditor:
            return window_.HideEditor();
        case Command::ShowEditor:
            return window_.ShowEditor();
        case Command::Exit:
            return window_.CloseEditor();
        case Command::Refresh:
            return tree_.OnUpdate();
        case Command::BypassGui:
            return BypassGui();
        case Command::StatusBar:
        case Command::ToolBar:
        case Command::ShowOnStart:
        case Command::AltDetect:
        case Command::LogWindow:
            return Toggle(command);
        case Command::ProgramLocations:
        case Command::ExclusionList:
        case Command::TrayIcon:
        case Command::About:
            return window_.RunDialog(command);
        case Command::HelpTopics:
            return window_.ShowStatus("There are no help topics yet.");
        case Command::AutoplayDefault:
        case Command::Import:
        case Command::Export:
        case Command::CdImager:
        case Command::MagicCfg:
            return window_.ShowStatus("This command is not available yet.");
    }
}

bool CMainFrame::IsOn(Command toggle) const {
    const auto* const row = FindToggle(toggle);
    return row != nullptr && (settings.*row->read)();
}

void CMainFrame::OnRun() {
    launch_.OnRun(document_, tree_.GetSelectedConfigFile(), catalogue_);
    window_.ShowRunning(launch_.Running());
}

void CMainFrame::OnNewConfig() {
    if (!document_.GiveUpChanges()) return;
    CNewConfig new_config(document_.configDir);
    if (!window_.RunNewConfig(new_config, SelectedGroup())) return;
    tree_.AddConfiguration(new_config.name, new_config.group);
}

void CMainFrame::OnNewGroup() {
    CNewGroup new_group;
    if (!window_.RunNewGroup(new_group, SelectedGroup())) return;
    tree_.AddGroup(new_group.name, new_group.parent);
}

void CMainFrame::OnCopy() {
    if (OnCopyConfig(document_, tree_)) tree_.OnUpdate();
}

void CMainFrame::Toggle(Command toggle) {
    const auto* const row = FindToggle(toggle);
    const bool on = !(settings.*row->read)();
    (settings.*row->write)(on);
    window_.SetChecked(toggle, on);
}

void CMainFrame::BypassGui() {
    const bool bypassed = settings.IsGuiBypassed();
    settings.SetGuiBypassed(!bypassed);
    if (bypassed) savedLogWindow = settings.IsLogWindowOn();
    settings.SetLogWindow(!bypassed && savedLogWindow);
    window_.SetChecked(Command::BypassGui, !bypassed);
}

std::string CMainFrame::SelectedGroup() const {
    const auto item = tree_.GetSelectedItem();
    return CEpsxeTree::NodeKind(item) == NodeKind::Group ? CEpsxeTree::TextOf(item)
                                                         : std::string(kRootGroup);
}

bool CMainFrame::OnClose() {
    if (!MayClose()) return false;
    const auto place = window_.Place();
    settings.SetWindowSize(place.size.cx, place.size.cy);
    settings.SetWindowPos(place.pos.x, place.pos.y);
    return true;
}

bool CMainFrame::MayClose() {
    if (document_.dirty) {
        const auto answer =
            platform::Boxes().Show({"Save current changes and exit?", "Save and exit",
                                    platform::BoxIcon::Question, platform::BoxButtons::YesNo});
        return answer == platform::BoxAnswer::Yes && document_.OnApply();
    }
    if (!settings.ShouldConfirmExit()) return true;
    bool dontAskAgain = false;
    if (!window_.RunExitDialog(dontAskAgain)) return false;
    if (dontAskAgain) settings.SetConfirmOff();
    return true;
}

void CMainFrame::OnHandOver(const std::string& name) {
    if (!CheckHandedOver(name)) return;
    // The file may be younger than the tree.
    if (tree_.Find(name, NodeKind::Configuration) == nullptr) tree_.OnUpdate();
    tree_.SelectByName(name, NodeKind::Configuration);
    const bool selected = SelectedKind() != NodeKind::Group && GetSelectedConfigName() == name;
    if (selected && document_.IsInHand(name)) OnRun();
}

bool CMainFrame::CheckHandedOver(const std::string& name) const {
    const auto file = name + std::string(kConfigEnding);
    const auto found = platform::FindFile(document_.configDir, file);
    if (found == file) return true;
    const std::string hint = found ? ". Remember that names are case sensitive." : "";
    platform::Report(name + " does not exist" + hint, "File not found");
    return false;
}

std::string CMainFrame::PluginDisplayName(const std::string& fileName) {
    const auto found = catalogue_.FindByFile(fileName);
    return found.empty() ? std::string() : found.back()->GetName();
}

}  // namespace velto
