#include "shell/panes/multi_view_splitter_window.h"

#include <QKeyEvent>
#include <QPainter>
#include <QSplitterHandle>
#include <QStackedWidget>

#include "widgets/owned.h"

namespace velto {
namespace {

class Pane : public QStackedWidget {
  public:
    Pane(int smallest, QWidget* view) : smallest_(smallest, smallest) {
        if (view != nullptr) addWidget(view);
    }

    QSize minimumSizeHint() const override {
        return QStackedWidget::minimumSizeHint().expandedTo(smallest_);
    }

  private:
    QSize smallest_;
};

// Takes the focus, by the Tab key alone, and shows that it has it.
class Divider : public QSplitterHandle {
  public:
    Divider(Qt::Orientation orientation, QSplitter* parent) : QSplitterHandle(orientation, parent) {
        setFocusPolicy(Qt::TabFocus);
        setAccessibleName("Divider");
    }

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        constexpr int kStep = 10;
        const bool columns = orientation() == Qt::Horizontal;
        const int position = columns ? x() : y();
        if (event->key() == (columns ? Qt::Key_Left : Qt::Key_Up)) {
            moveSplitter(position - kStep);
        } else if (event->key() == (columns ? Qt::Key_Right : Qt::Key_Down)) {
            moveSplitter(position + kStep);
        } else {
            QSplitterHandle::keyPressEvent(event);
        }
    }
    void paintEvent(QPaintEvent* event) override {
        QSplitterHandle::paintEvent(event);
        if (hasFocus()) QPainter(this).fillRect(rect(), palette().highlight());
    }
};

}  // namespace

CMultiViewSplitterWindow::CMultiViewSplitterWindow(int id, bool horizontal, QWidget* view0,
                                                   QWidget* view1, QWidget* parent)
    : QSplitter(horizontal ? Qt::Horizontal : Qt::Vertical, parent),
      state_(id, horizontal),
      panes_{MakeOwned<Pane>(state_.minSize0, view0), MakeOwned<Pane>(state_.minSize1, view1)} {
    setChildrenCollapsible(false);
    for (auto* const pane : panes_) addWidget(pane);
    setStretchFactor(0, 0);
    setStretchFactor(1, 1);
}

CMultiViewSplitterWindow::~CMultiViewSplitterWindow() {
    if (!nested_) SaveState();
}

CMultiViewSplitterWindow* CMultiViewSplitterWindow::AddNestedSplitter(int pane, QWidget* view0,
                                                                      QWidget* view1,
                                                                      bool horizontal) {
    auto* const child =
        MakeOwned<CMultiViewSplitterWindow>(state_.id + 1, horizontal, view0, view1);
    child->nested_ = true;
    children_.at(static_cast<std::size_t>(pane)) = child;
    AddView(pane, child);
    return child;
}

int CMultiViewSplitterWindow::AddView(int pane, QWidget* view) {
    auto& views = *panes_.at(static_cast<std::size_t>(pane));
    const int index = views.addWidget(view);
    views.setCurrentIndex(index);
    return index;
}

void CMultiViewSplitterWindow::SwitchView(int pane, int index) {
    auto& views = *panes_.at(static_cast<std::size_t>(pane));
    if (index == -1)
        index = views.currentIndex() + 1 < views.count() ? views.currentIndex() + 1 : 0;
    views.setCurrentIndex(index);
}

QWidget* CMultiViewSplitterWindow::GetPane(int row, int column) const {
    const int pane = state_.horizontal ? column : row;
    if (row + column != pane || pane < 0 || pane > 1) return nullptr;
    return panes_.at(static_cast<std::size_t>(pane))->currentWidget();
}

void CMultiViewSplitterWindow::LoadState() {
    state_.LoadState();
    // Of a size that the other pane's contents don't leave room for, the first pane gets what is
    // left, and the whole as soon as there is room.
    setSizes({state_.size0, state_.size1});
    const auto hidden = state_.HiddenPane();
    for (int i = 0; i < count(); ++i) widget(i)->setVisible(hidden != i);
    for (auto* const child : children_) {
        if (child != nullptr) child->LoadState();
    }
}

void CMultiViewSplitterWindow::SaveState() {
    if (!was_shown_) return;
    TakeSizes();
    WriteState();
}

QSplitterHandle* CMultiViewSplitterWindow::createHandle() {
    return MakeOwned<Divider>(orientation(), this);
}

void CMultiViewSplitterWindow::showEvent(QShowEvent* event) {
    was_shown_ = true;
    QSplitter::showEvent(event);
}

void CMultiViewSplitterWindow::TakeSizes() {
    for (auto* const child : children_) {
        if (child != nullptr) child->TakeSizes();
    }
    const auto live = sizes();
    state_.TakeSizes(live.value(0), live.value(1));
}

void CMultiViewSplitterWindow::WriteState() const {
    state_.SaveState();
    for (const auto* const child : children_) {
        if (child != nullptr) child->WriteState();
    }
}

}  // namespace velto
