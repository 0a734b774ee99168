// The editor's main frame without its window: the commands, their settings, the end of the
// program, and configurations handed over by a second process.
//
// It joins document, tree, catalogue and launch, and is the editor that the document asks. It owns
// the document and the tree; all else must outlive it. All calls come on the user interface thread.
// What fails is reported by a message box.
#pragma once

#include <string>

#include "launch/launch_cycle.h"
#include "plugins/plugin_catalogue.h"
#include "shell/commands.h"
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

    virtual void EnableApplyAndReset(bool enabled) = 0;
    // The pages take their contents from the record.
    virtual void RefreshPages() = 0;
    // The check mark of a toggle in the main menu. A bar is shown or hidden with its mark.
    virtual void SetChecked(Command toggle, bool on) = 0;
    virtual void ShowStatus(const std::string& text) = 0;
    // The configuration that runs; empty: none.
    virtual void ShowRunning(const std::string& configuration) = 0;

    virtual void ShowEditor() = 0;
    virtual void HideEditor() = 0;
    // Closes as the window's close box does.
    virtual void CloseEditor() = 0;
    virtual WindowPlace Place() const = 0;

    // Dialogs, run to their end. True: OK.
    virtual bool RunNewConfig(CNewConfig& new_config, const std::string& selected_group) = 0;
    virtual bool RunNewGroup(CNewGroup& new_group, const std::string& selected_group) = 0;
    virtual bool RunExitDialog(bool& dontAskAgain) = 0;
    // ProgramLocations, ExclusionList, TrayIcon or About.
    virtual void RunDialog(Command dialog) = 0;
};

class CMainFrame : public Editor {
  public:
    // `configDir` is a host path without a separator at its end.
    CMainFrame(std::string configDir, CPluginCatalogue& catalogue, LaunchCycle& launch,
               PageTable pages, TreeWindow& tree_window, FrameWindow& window);

    // Once, with all windows made: the check marks, and the tree as it is on disk.
    void OnCreate();

    // As the last end of the program left it; zeros for what isn't known.
    WindowPlace StoredPlace() const;
    // The content of the icon file that the user chose for the tray. Empty if there is none, or it
    // can't be read.
    std::string TrayIconFile() const;

    void Do(Command command);
    bool IsOn(Command toggle) const;

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
    NodeKind SelectedKind() override { return CEpsxeTree::NodeKind(tree_.GetSelectedItem()); }
    NodeKind PreviousKind() override { return CEpsxeTree::NodeKind(tree_.GetPreviousItem()); }
    bool SelectByName(const std::string& name, NodeKind kind) override {
        return tree_.SelectByName(name, kind);
    }
    void EnableApplyAndReset(bool enabled) override { window_.EnableApplyAndReset(enabled); }
    void RefreshPages() override { window_.RefreshPages(); }
    std::string PluginDisplayName(const std::string& fileName) override;
    // Nothing is adapted yet: record and file stay as they are.
    void AdaptPortable(CVeltoDoc& /*document*/, const std::string& /*name*/) override {}

  private:
    void OnNewConfig();
    void OnNewGroup();
    void OnCopy();
    void Toggle(Command toggle);
    void ShowToggles();
    void BypassGui();
    std::string SelectedGroup() const;
    bool MayClose();
    // The configuration's file is there in this spelling; else a message.
    bool CheckHandedOver(const std::string& name) const;

    CPluginCatalogue& catalogue_;
    LaunchCycle& launch_;
    FrameWindow& window_;
    CVeltoSettings settings;
    CVeltoDoc document_;
    CEpsxeTree tree_;
    // The log window's state from before the bypass was last switched off.
    bool savedLogWindow = false;
};

}  // namespace velto
