// Where the divider between two panes stands, and how that outlives the program.
//
// The panes lie side by side or one above the other. Each splitter keeps one text in the registry,
// below software\velto\SplitterWnd, of the form "%d %d %d %d": the hidden column, the size of
// pane 0, the hidden row, the size of pane 1. Sizes are in pixels. No read or write reports a
// failure: what can't be read counts as missing, and what can't be written leaves the old text.
#pragma once

#include <optional>

namespace velto {

class CMultiViewSplitter {
  public:
    // One row has two columns; otherwise there is one column of two rows. Splitters that live at
    // the same time have numbers of their own.
    CMultiViewSplitter(int number, bool one_row) : id(number), horizontal(one_row) {}

    // A text that is missing, or isn't four numbers that a screen can have, counts as
    // "-1 150 -1 150".
    void LoadState();
    // Writes 100 for a size of -1.
    void SaveState() const;

    // The sizes that the user sees now. They are kept only while both panes are shown.
    void TakeSizes(int pane0, int pane1);
    // The pane that isn't shown, 0 or 1, if there is one.
    std::optional<int> HiddenPane() const;

    const int id;
    const bool horizontal;
    // Indices, -1 for none.
    int hiddenColumn = -1;
    int hiddenRow = -1;
    int size0 = 100;
    int size1 = 100;
    // Panes are never made smaller than this.
    int minSize0 = 10;
    int minSize1 = 10;
};

}  // namespace velto
