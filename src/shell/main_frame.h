// The editor's main frame without its window: the commands, their settings, the end of the
// program, and configurations handed over by a second process.
//
// It joins document, tree, catalogue and launch, and is the editor that the document asks. It owns
// the document, the tree and what the commands do; all else must outlive it. All calls come on the
// user interface thread. What fails is reported by a message box.
#pragma once

#include <functional>
#include <string>

#include "launch/launch_cycle.h"
#include "plugins/plugin_catalogue.h"
#include "shell/command_handlers.h"
#include "shell/panes/panes.h"
#include "shell/tree/epsxe_tree.h"
#include "shell/tree/new_config.h"
#include "shell/tree/new_group.h"
#include "store/editor.h"
#include "store/velto_doc.h"

namespace velto {

// Where the main window is when it is neither maximised nor minimised: the size of its contents
// and the position of its frame, in pixels.
struct WindowPlace {
    CVeltoSettings::WindowSize size{};
    CVeltoSettings::WindowPos pos{};
};

// What the frame asks of its window.
class FrameWindow {
  public:
    virtual ~FrameWindow() = default;

    // The check mark of a toggle in the main menu. A bar is shown or hidden with its mark.
    virtual void SetChecked(Command toggle, bool on) = 0;
    virtual void ShowStatus(const std::string& text) = 0;
    virtual WindowPlace Place() const = 0;

    // Dialogs, run to their end. True: OK.
    virtual bool RunNewConfig(CNewConfig& new_config, const std::string& selected_group) = 0;
    virtual bool RunNewGroup(CNewGroup& new_group, const std::string& selected_group) = 0;
    virtual bool RunExitDialog(bool& dontAskAgain) = 0;
};

class CMainFrame : public Editor {
  public:
    // `configDir` is a host path without a separator at its end.
    CMainFrame(std::string configDir, CPluginCatalogue& catalogue, LaunchCycle& launch,
               PageTable pages, TreeWindow& tree_window, FrameWindow& window);

    // Once, with all windows made: the check marks, and the tree as it is on disk. `refresh_page`
    // lets the page that is shown take its contents from the record.
    void OnCreate(ButtonBar& panel, std::function<void()> refresh_page);

    // As the last end of the program left it; zeros for what isn't known.
    WindowPlace StoredPlace() const;
    // The content of the icon file that the user chose for the tray. Empty if there is none, or it
    // can't be read.
    std::string TrayIconFile() const;

    // What isn't the frame's own is registered here by its window and the features.
    CommandHandlers& commands() { return commands_; }
    void Do(Command command);

    // The button "Launch Epsxe".
    void OnRun();
    // A run has ended.
    void OnRunEnded();

    // The window was hidden.
    void OnHidden() { UnloadOtherPlugins(catalogue_, document_); }

    // Whether the window may close. If so, its place is stored, and unsaved changes are saved.
    bool OnClose();

    // Selects the configuration of this name and launches it if it is then in hand.
    void OnHandOver(const std::string& name);

    CVeltoDoc& document() { return document_; }
    CEpsxeTree& tree() { return tree_; }

    // Editor
    std::string GetSelectedConfigName() override { return tree_.GetSelectedConfigName(); }
    std::string GetSelectedConfigFile() override { return tree_.GetSelectedConfigFile(); }
    NodeKind SelectedKind() override { return tree_.GetSelectedItem().kind(); }
    NodeKind PreviousKind() override { return tree_.GetPreviousItem().kind(); }
    bool SelectByName(const std::string& name, NodeKind kind) override {
        return tree_.SelectByName(name, kind);
    }
    void EnableApplyAndReset(bool enabled) override { panel_->EnableApplyAndReset(enabled); }
    void RefreshPages() override { refresh_page_(); }
    std::string PluginDisplayName(const std::string& fileName) override;
    // Nothing is adapted yet: record and file stay as they are.
    void AdaptPortable(CVeltoDoc& /*document*/, const std::string& /*name*/) override {}

  private:
    void RegisterCommands();
    void RegisterToggles();
    void OnNewConfig();
    void OnNewGroup();
    void OnCopy();
    void ShowToggles();
    void BypassGui(bool bypass);
    std::string SelectedGroup() const;
    bool MayClose();

    CPluginCatalogue& catalogue_;
    LaunchCycle& launch_;
    FrameWindow& window_;
    ButtonBar* panel_ = nullptr;  // both from OnCreate on
    std::function<void()> refresh_page_;
    CVeltoSettings settings_;
    CVeltoDoc document_;
    CEpsxeTree tree_;
    CommandHandlers commands_;
    // From before the bypass was last switched off.
    bool saved_log_window_ = false;
};

}  // namespace velto
