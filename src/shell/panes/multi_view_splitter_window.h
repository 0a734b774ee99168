// Two panes with a divider between them, of which each shows one of several views.
//
// The views of a pane are all there from the start, and keep their contents; one of them is shown.
// They belong to the splitter, as does a splitter that is nested in a pane. The divider moves by
// the mouse and, when it has the focus, by the arrow keys.
//
// What isn't the first pane's is the second one's: only this one grows and shrinks with the window.
// A pane is never smaller than its contents must have.
#pragma once

#include <QSplitter>
#include <array>

#include "shell/panes/multi_view_splitter.h"

class QStackedWidget;

namespace velto {

class CMultiViewSplitterWindow : public QSplitter {
  public:
    // A null view leaves its pane empty until AddView or AddNestedSplitter.
    CMultiViewSplitterWindow(int id, bool horizontal, QWidget* view0, QWidget* view1,
                             QWidget* parent = nullptr);
    // Stores the positions of all dividers, by SaveState() of the outermost splitter.
    ~CMultiViewSplitterWindow() override;
    CMultiViewSplitterWindow(const CMultiViewSplitterWindow&) = delete;
    CMultiViewSplitterWindow& operator=(const CMultiViewSplitterWindow&) = delete;

    // Its id is one above this one's.
    CMultiViewSplitterWindow* AddNestedSplitter(int pane, QWidget* view0, QWidget* view1,
                                                bool horizontal);
    // The view becomes the last one of the pane, and is shown. Gives its index.
    int AddView(int pane, QWidget* view);
    // -1 takes the next view, and the first one behind the last. Another index without a view
    // changes nothing.
    void SwitchView(int pane, int index);
    // The view that is shown there; null if there is none.
    QWidget* GetPane(int row, int column) const;

    // All dividers from here inwards. SaveState leaves what is stored as it is if the splitter was
    // never shown.
    void LoadState();
    void SaveState();

  protected:
    QSplitterHandle* createHandle() override;
    void showEvent(QShowEvent* event) override;

  private:
    void TakeSizes();
    void WriteState() const;

    CMultiViewSplitter state_;
    std::array<QStackedWidget*, 2> panes_{};
    std::array<CMultiViewSplitterWindow*, 2> children_{};
    bool nested_ = false;
    bool was_shown_ = false;
};

}  // namespace velto
