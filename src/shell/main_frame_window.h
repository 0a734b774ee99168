// The editor's main window: menus, tool bar, status bar, panes and the tray icon around
// CMainFrame.
//
// It comes and goes while the program runs: hidden it lives on in the tray. Its close box ends the
// program, if the frame lets it.
#pragma once

#include <QMainWindow>
#include <QMenu>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>

#include "plugins/plugin_catalogue.h"
#include "shell/command_actions_window.h"
#include "shell/hand_over.h"
#include "shell/main_frame.h"
#include "shell/panes/editor_panes_window.h"
#include "shell/place_window.h"
#include "shell/tray_window.h"
#include "shell/tree/epsxe_tree_view.h"
#include "widgets/deferred.h"

namespace velto {

class CMainFrameWindow : public QMainWindow, public FrameWindow {
  public:
    // `configDir` is a host path without a separator at its end. `has_tray` tells whether the
    // desktop has a tray. The window is hidden at first.
    CMainFrameWindow(std::string configDir, CPluginCatalogue& catalogue, LaunchCycle& launch,
                     std::function<bool()> has_tray = &QSystemTrayIcon::isSystemTrayAvailable);
    ~CMainFrameWindow() override;

    // Takes its stored place, shows itself if the settings say so, and listens to second
    // processes from now on. `closed` is called when the user has closed it for good.
    void Start(std::function<void()> closed);

    void ShowEditor();

    CEpsxeTree& tree() { return frame_->tree(); }
    // A run has ended. From any thread.
    void PostRunEnded();

    // FrameWindow
    void SetChecked(Command toggle, bool on) override;
    void ShowStatus(const std::string& text) override;
    WindowPlace Place() const override { return PlaceOf(*this); }
    bool RunNewConfig(CNewConfig& new_config, const std::string& selected_group) override;
    bool RunNewGroup(CNewGroup& new_group, const std::string& selected_group) override;
    bool RunExitDialog(bool& dontAskAgain) override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void MakeBars();
    void RegisterCommands();
    PageServices Services();
    PanelCommands Buttons();
    void MakeTray(std::function<bool()> has_tray);
    void Run(Command command);
    void HideEditor();
    void RunPathsDialog();
    // False if none is open.
    static bool RaiseDialog();
    void ServeHandOver();
    // Over the editor, or, while that is hidden, in its own right.
    QWidget* DialogParent();

    CommandActions actions_;
    QToolBar* tool_bar_ = nullptr;
    CEpsxeTreeView* tree_view_ = nullptr;
    std::unique_ptr<CMainFrame> frame_;
    EditorPanes* panes_ = nullptr;
    QMenu tray_menu_;
    std::unique_ptr<TrayWindow> tray_;
    std::unique_ptr<HandOver> hand_over_;
    QTimer hand_over_again_;
    Deferred later_;
    std::function<void()> on_closed_;
    bool told_of_tray_ = false;
    bool closed_ = false;
};

}  // namespace velto
