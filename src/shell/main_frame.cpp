#include "shell/main_frame.h"

#include <utility>

#include "platform/files.h"
#include "platform/message_box.h"
#include "platform/stored_path.h"
#include "shell/tree/copy_config.h"

namespace velto {

CMainFrame::CMainFrame(std::string configDir, CPluginCatalogue& catalogue, LaunchCycle& launch,
                       PageTable pages, TreeWindow& tree_window, FrameWindow& window)
    : catalogue_(catalogue),
      launch_(launch),
      window_(window),
      document_(std::move(configDir), *this),
      tree_(document_, tree_window, pages) {
    RegisterCommands();
    RegisterToggles();
}

void CMainFrame::OnCreate(ButtonBar& panel, std::function<void()> refresh_page) {
    panel_ = &panel;
    refresh_page_ = std::move(refresh_page);
    ShowToggles();
    tree_.OnUpdate();
}

// The emulator's own settings are what they were before the run, the log window's among them.
void CMainFrame::OnRunEnded() {
    panel_->ShowRunning(launch_.Running());
    ShowToggles();
}

void CMainFrame::ShowToggles() {
    for (const auto& row : CommandTable()) {
        if (row.toggle) window_.SetChecked(row.command, commands_.IsOn(row.command));
    }
}

WindowPlace CMainFrame::StoredPlace() const {
    return {settings_.GetWindowSize(), settings_.GetWindowPos()};
}

std::string CMainFrame::TrayIconFile() const {
    constexpr std::size_t kLargestIcon = 4 << 20;
    const auto stored = settings_.GetIconFile();
    if (stored.empty()) return {};
    auto file = platform::ReadWhole(platform::Files(), platform::HostPath(stored), kLargestIcon);
    return file.ok() ? std::move(file).value() : std::string();
}

void CMainFrame::RegisterCommands() {
    commands_.Register(Command::NewConfiguration, [this] { OnNewConfig(); });
    commands_.Register(Command::NewGroup, [this] { OnNewGroup(); });
    commands_.Register(Command::CopyConfiguration, [this] { OnCopy(); });
    commands_.Register(Command::Delete, [this] { tree_.OnDelete(); });
    commands_.Register(Command::Refresh, [this] { tree_.OnUpdate(); });
    commands_.Register(Command::HelpTopics,
                       [this] { window_.ShowStatus("There are no help topics yet."); });
}

void CMainFrame::RegisterToggles() {
    using Settings = CVeltoSettings;
    const auto add = [this](Command toggle, bool (Settings::*read)() const,
                            void (Settings::*write)(bool)) {
        commands_.RegisterToggle(
            toggle, [this, read] { return (settings_.*read)(); },
            [this, write](bool on) { (settings_.*write)(on); });
    };
    add(Command::LogWindow, &Settings::IsLogWindowOn, &Settings::SetLogWindow);
    add(Command::ShowOnStart, &Settings::IsShownOnLoad, &Settings::SetShownOnLoad);
    add(Command::AltDetect, &Settings::IsAltDetect, &Settings::SetAltDetect);
    add(Command::ToolBar, &Settings::IsToolBarOn, &Settings::SetToolBarOn);
    add(Command::StatusBar, &Settings::IsStatusBarOn, &Settings::SetStatusBarOn);
    commands_.RegisterToggle(
        Command::BypassGui, [this] { return settings_.IsGuiBypassed(); },
        [this](bool bypass) { BypassGui(bypass); });
}

void CMainFrame::Do(Command command) {
    if (!commands_.Run(command)) return window_.ShowStatus("This command is not available yet.");
    if (RowOf(command).toggle) window_.SetChecked(command, commands_.IsOn(command));
}

void CMainFrame::OnRun() {
    launch_.OnRun(document_, tree_.GetSelectedConfigFile(), catalogue_);
    panel_->ShowRunning(launch_.Running());
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

// The log window's own check mark stays as it is.
void CMainFrame::BypassGui(bool bypass) {
    settings_.SetGuiBypassed(bypass);
    if (!bypass) saved_log_window_ = settings_.IsLogWindowOn();
    settings_.SetLogWindow(bypass && saved_log_window_);
}

std::string CMainFrame::SelectedGroup() const {
    const auto item = tree_.GetSelectedItem();
    return item.kind() == NodeKind::Group ? item.text() : std::string(kRootGroup);
}

bool CMainFrame::OnClose() {
    if (!MayClose()) return false;
    const auto place = window_.Place();
    settings_.SetWindowSize(place.size.cx, place.size.cy);
    settings_.SetWindowPos(place.pos.x, place.pos.y);
    return true;
}

bool CMainFrame::MayClose() {
    if (document_.dirty) {
        const auto answer =
            platform::Boxes().Show({"Save current changes and exit?", "Save and exit",
                                    platform::BoxIcon::Question, platform::BoxButtons::YesNo});
        return answer == platform::BoxAnswer::Yes && document_.OnApply();
    }
    if (!settings_.ShouldConfirmExit()) return true;
    bool dontAskAgain = false;
    if (!window_.RunExitDialog(dontAskAgain)) return false;
    if (dontAskAgain) settings_.SetConfirmOff();
    return true;
}

void CMainFrame::OnHandOver(const std::string& name) {
    if (!document_.configDir.CheckIsThere(name, name)) return;
    // The file may be younger than the tree.
    if (tree_.nodes().Find(name, NodeKind::Configuration) == nullptr) tree_.OnUpdate();
    tree_.SelectByName(name, NodeKind::Configuration);
    const bool selected = SelectedKind() != NodeKind::Group && GetSelectedConfigName() == name;
    if (selected && document_.IsInHand(name)) OnRun();
}

std::string CMainFrame::PluginDisplayName(const std::string& fileName) {
    const auto found = catalogue_.FindByFile(fileName);
    return found.empty() ? std::string() : found.back()->GetName();
}

}  // namespace velto
