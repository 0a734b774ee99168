// The client area of the main window: the tree on the left; on the right one of the pages, above
// the button bar.
//
// All views are made here, once, and belong to the panes, the tree's too. A page takes its contents
// from the record each time that it is shown; what the user types is in the record at once.
// The dividers stand where they were when the panes were last destroyed.
//
// What the services refer to isn't owned. The destructor doesn't touch it.
#pragma once

#include <vector>

#include "shell/panes/multi_view_splitter_window.h"
#include "shell/panes/panel_view.h"
#include "shell/panes/panes.h"

namespace velto {

class EditorPanes : public CMultiViewSplitterWindow {
  public:
    EditorPanes(QWidget* tree_view, PageTable pages, const PageServices& services,
                const PanelCommands& commands, QWidget* parent = nullptr);

    // A number that no page has is that of a configuration's own page.
    void ShowPage(int number);
    // The record has changed behind the page that is shown.
    void RefreshPage();

    ButtonBar& panel() { return *panel_; }

  private:
    void AddPages(PageTable pages, const PageServices& services);
    void PutDividerBehindPages();

    CPanelView* panel_;
    CMultiViewSplitterWindow* right_;
    std::vector<Page*> pages_;  // by their numbers
    int fallback_;
    Page* shown_ = nullptr;  // null until the first selection
};

}  // namespace velto
