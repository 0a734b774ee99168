// The client area of the main window: the tree on the left; on the right one of nine pages, above
// the button bar.
//
// All views are made here, once, and belong to the panes, the tree's too. A page takes its contents
// from the record each time that it is shown; what the user types is in the record at once.
// The dividers stand where they were when the panes were last destroyed.
//
// The document and the services are not owned. The destructor doesn't touch them.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "shell/panes/inital_view.h"
#include "shell/panes/multi_view_splitter_window.h"
#include "shell/panes/panel_view.h"
#include "store/velto_doc.h"

namespace velto {

class CHeadView;
class CMiscSettingsView;

// What the panes ask of the program around them. An empty function asks nothing.
struct PaneServices {
    Editor& editor;
    PanelCommands panel;
    WelcomeCommands welcome;
    std::function<bool()> has_configurations;
    // How many configurations the selected group holds.
    std::function<std::size_t()> group_size;
};

class EditorPanes : public CMultiViewSplitterWindow {
  public:
    EditorPanes(QWidget* tree_view, CVeltoDoc& document, PaneServices services,
                QWidget* parent = nullptr);

    // Pages have the numbers of the tree, 0 to 8; any other number is that of the miscellaneous
    // page.
    void ShowPage(int page);
    // The record has changed behind the page that is shown.
    void RefreshPages();

    void EnableApplyAndReset(bool enabled) { panel_->EnableApplyAndReset(enabled); }
    void ShowRunning(const std::string& configuration) { panel_->ShowRunning(configuration); }

  private:
    void AddPages();
    void PutDividerBehindPages();

    CVeltoDoc& document_;
    PaneServices services_;
    CPanelView* panel_;
    CMultiViewSplitterWindow* right_;
    CInitalView* welcome_ = nullptr;
    CMiscSettingsView* misc_ = nullptr;
    CHeadView* head_ = nullptr;
};

}  // namespace velto
