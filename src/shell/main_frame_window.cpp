#include "shell/main_frame_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QStatusBar>
#include <utility>

#include "platform/message_box.h"
#include "plugins/exclusion_dialog.h"
#include "shell/frame_dialog.h"
#include "shell/panes/page_table_window.h"
#include "shell/paths_dialog.h"
#include "shell/tree/new_node_dialog.h"
#include "widgets/owned.h"
#include "widgets/text.h"

namespace velto {
namespace {

constexpr const char* kTitle = "Velto V1.67.160. Beta 4";
constexpr int kStatusMs = 8000;
constexpr int kHandOverAgainMs = 100;

}  // namespace

CMainFrameWindow::CMainFrameWindow(std::string configDir, CPluginCatalogue& catalogue,
                                   LaunchCycle& launch, std::function<bool()> has_tray)
    : actions_(*this, [this](Command command) { Run(command); }) {
    setWindowTitle(kTitle);
    setWindowIcon(QIcon(":/icons/velto.svg"));
    // The bars are shown and hidden by their commands alone, which keep the settings in step.
    setContextMenuPolicy(Qt::PreventContextMenu);
    hand_over_again_.setSingleShot(true);
    connect(&hand_over_again_, &QTimer::timeout, this, [this] { ServeHandOver(); });
    MakeBars();
    tree_view_ = MakeOwned<CEpsxeTreeView>(this, [this](int page) { panes_->ShowPage(page); });
    frame_ = std::make_unique<CMainFrame>(std::move(configDir), catalogue, launch, Pages(),
                                          *tree_view_, *this);
    panes_ = MakeOwned<EditorPanes>(tree_view_, Pages(), Services(), Buttons(), this);
    setCentralWidget(panes_);
    tree_view_->SetTree(frame_->tree());
    tree_view_->addAction(&actions_[Command::Delete]);
    tree_view_->SetContextActions(
        {&actions_[Command::NewConfiguration], &actions_[Command::NewGroup],
         &actions_[Command::CopyConfiguration], &actions_[Command::Delete]});
    MakeTray(std::move(has_tray));
    RegisterCommands();
    frame_->OnCreate(panes_->panel(), [this] { panes_->RefreshPage(); });
}

// The panes show what the frame owns, and go first.
CMainFrameWindow::~CMainFrameWindow() {
    hand_over_.reset();
    const std::unique_ptr<QWidget> panes(takeCentralWidget());
}

void CMainFrameWindow::MakeBars() {
    actions_.FillMenuBar(*menuBar());
    tool_bar_ = addToolBar("Tool Bar");
    actions_.FillToolBar(*tool_bar_);
    statusBar();
}

void CMainFrameWindow::RegisterCommands() {
    auto& commands = frame_->commands();
    commands.Register(Command::ShowEditor, [this] { ShowEditor(); });
    commands.Register(Command::HideEditor, [this] { HideEditor(); });
    commands.Register(Command::Exit, [this] { later_.Call([this] { close(); }); });
    commands.Register(Command::ProgramLocations, [this] { RunPathsDialog(); });
    commands.Register(Command::ExclusionList, [this] { CExclusionDlg(DialogParent()).exec(); });
    commands.Register(Command::TrayIcon, [this] { CTrayIconDlg(DialogParent()).exec(); });
    commands.Register(Command::About, [this] { CAboutDlg(DialogParent()).exec(); });
}

PageServices CMainFrameWindow::Services() {
    return {.document = frame_->document(),
            .editor = *frame_,
            .run = [this](Command command) { Run(command); },
            .count_selected =
                [this] {
                    const auto* const node = frame_->tree().GetSelectedItem().node;
                    return node == nullptr ? 0 : CountConfigurations(*node);
                }};
}

PanelCommands CMainFrameWindow::Buttons() {
    return {.run = [this] { frame_->OnRun(); },
            .apply = [this] { frame_->document().OnApply(); },
            .reset = [this] { frame_->document().OnReset(); }};
}

void CMainFrameWindow::MakeTray(std::function<bool()> has_tray) {
    CommandActions::FillTrayMenu(
        tray_menu_, [this](Command command) { Run(command); },
        [this](Command toggle) { return frame_->commands().IsOn(toggle); });
    tray_ = std::make_unique<TrayWindow>(frame_->TrayIconFile(), tray_menu_,
                                         TrayWindow::Actions{[this] { Run(Command::ShowEditor); },
                                                             [this] {
                                                                 if (!isVisible()) ShowEditor();
                                                             }},
                                         std::move(has_tray));
}

void CMainFrameWindow::Start(std::function<void()> closed) {
    on_closed_ = std::move(closed);
    // Called on a thread of its own.
    hand_over_ = std::make_unique<HandOver>([this] { PostTo(*this, [this] { ServeHandOver(); }); });
    MoveTo(*this, frame_->StoredPlace());
    tree_view_->setFocus();
    if (frame_->commands().IsOn(Command::ShowOnStart)) {
        show();
    } else if (!tray_->present()) {
        HideEditor();
    }
}

void CMainFrameWindow::Run(Command command) {
    // The tray's menu opens beside a dialog, too.
    if (RaiseDialog()) return;
    if (tree_view_->FinishEditing()) {
        later_.Call([this, command] { Run(command); });
    } else {
        frame_->Do(command);
    }
}

bool CMainFrameWindow::RaiseDialog() {
    auto* const dialog = QApplication::activeModalWidget();
    if (dialog == nullptr) return false;
    dialog->raise();
    dialog->activateWindow();
    return true;
}

void CMainFrameWindow::SetChecked(Command toggle, bool on) {
    actions_[toggle].setChecked(on);
    if (toggle == Command::ToolBar) tool_bar_->setVisible(on);
    if (toggle == Command::StatusBar) statusBar()->setVisible(on);
}

void CMainFrameWindow::ShowStatus(const std::string& text) {
    statusBar()->showMessage(FromBytes(text), kStatusMs);
}

void CMainFrameWindow::ShowEditor() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    RaiseDialog();
}

void CMainFrameWindow::HideEditor() {
    if (tray_->present()) {
        hide();
        return frame_->OnHidden();
    }
    if (!std::exchange(told_of_tray_, true)) {
        platform::Report(
            "This desktop has no tray, so Velto stays among the windows, "
            "minimised instead of hidden.",
            "No tray", platform::BoxIcon::Information);
    }
    showMinimized();
    frame_->OnHidden();
}

bool CMainFrameWindow::RunNewConfig(CNewConfig& new_config, const std::string& selected_group) {
    return CNewConfigDialog(new_config, selected_group, DialogParent()).exec() == QDialog::Accepted;
}

bool CMainFrameWindow::RunNewGroup(CNewGroup& new_group, const std::string& selected_group) {
    return CNewGroupDialog(new_group, selected_group, DialogParent()).exec() == QDialog::Accepted;
}

bool CMainFrameWindow::RunExitDialog(bool& dontAskAgain) {
    CExitDialog dialog(DialogParent());
    const bool ok = dialog.exec() == QDialog::Accepted;
    dontAskAgain = dialog.dontAskAgain;
    return ok;
}

void CMainFrameWindow::RunPathsDialog() {
    CPathsDlg(DialogParent()).exec();
    panes_->RefreshPage();
}

QWidget* CMainFrameWindow::DialogParent() {
    return isVisible() && !isMinimized() ? this : nullptr;
}

void CMainFrameWindow::closeEvent(QCloseEvent* event) {
    if (tree_view_->FinishEditing()) {
        later_.Call([this] { close(); });
        return event->ignore();
    }
    // Something is under way that the window is still needed for.
    if (RaiseDialog()) return event->ignore();
    if (!closed_ && !frame_->OnClose()) return event->ignore();
    closed_ = true;
    event->accept();
    if (on_closed_) on_closed_();
}

void CMainFrameWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || !isMinimized() || !tray_->present()) return;
    // The window system is still at work on the change.
    later_.Call([this] {
        hide();
        setWindowState(windowState() & ~Qt::WindowMinimized);
        frame_->OnHidden();
    });
}

void CMainFrameWindow::PostRunEnded() {
    PostTo(*this, [this] { frame_->OnRunEnded(); });
}

void CMainFrameWindow::ServeHandOver() {
    if (QApplication::activeModalWidget() != nullptr ||
        QApplication::activePopupWidget() != nullptr) {
        hand_over_again_.start(kHandOverAgainMs);
        return;
    }
    const auto name = hand_over_->Take();
    if (!name) return;
    frame_->OnHandOver(*name);
    hand_over_->Done();
}

}  // namespace velto
