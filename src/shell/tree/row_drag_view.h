// A tree view whose rows the user drags onto other rows of the same view.
//
// Where a row may go, and what a drop does, is the derived view's. A drop is told when the drag
// and its own event loop have ended, and only if both rows are still there.
#pragma once

#include <QMimeData>
#include <QPersistentModelIndex>
#include <QTimer>
#include <QTreeView>

#include "widgets/deferred.h"

namespace velto {

// What is dragged. It has one format of its own, without contents: no other program can drop it.
class RowDragData : public QMimeData {
  public:
    explicit RowDragData(const QModelIndex& dragged);
    const QPersistentModelIndex row;
};

class RowDragView : public QTreeView {
  public:
    explicit RowDragView(QWidget* parent);

  protected:
    enum class Offer { Refused, Accepted, Highlighted };
    // What a drop on the target would do, as the cursor and the target's look tell. Both are valid.
    virtual Offer OfferOf(const QModelIndex& dragged, const QModelIndex& target) const = 0;
    virtual void Dropped(const QModelIndex& dragged, const QModelIndex& target) = 0;
    // The drag has ended, with a drop, which is told later, or without one.
    virtual void DragEnded() = 0;
    // For what must wait until the view has finished with an event.
    Deferred& later() { return later_; }

    void startDrag(Qt::DropActions supported) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;

  private:
    // Takes the row under the cursor as the target, and accepts the event if it can be dropped on.
    void Aim(QDropEvent& event);
    void Highlight(const QModelIndex& index);
    void TellDrop();

    bool dragging_ = false;  // the drag's event loop runs
    QPersistentModelIndex under_cursor_;
    QPersistentModelIndex highlighted_;
    QPersistentModelIndex dropped_;
    QPersistentModelIndex dropped_on_;
    Deferred later_;
    QTimer open_timer_;  // opens the row that the cursor rests on
};

}  // namespace velto
