#include "shell/tree/row_drag_view.h"

#include <QDrag>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QPainter>
#include <utility>

#include "widgets/owned.h"

namespace velto {
namespace {

constexpr const char* kFormat = "application/x-velto-tree-row";
constexpr int kOpenAfterMilliseconds = 700;
constexpr float kHighlightOpacity = 0.5F;

// Not valid if the row has gone, or something else is dragged.
QModelIndex DraggedRow(const QDropEvent& event) {
    const auto* const data = dynamic_cast<const RowDragData*>(event.mimeData());
    if (data == nullptr) return {};
    return data->row;
}

}  // namespace

RowDragData::RowDragData(const QModelIndex& dragged) : row(dragged) {
    setData(kFormat, {});
}

RowDragView::RowDragView(QWidget* parent) : QTreeView(parent) {
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(false);
    open_timer_.setSingleShot(true);
    open_timer_.setInterval(kOpenAfterMilliseconds);
    connect(&open_timer_, &QTimer::timeout, this, [this] { expand(under_cursor_); });
}

void RowDragView::startDrag(Qt::DropActions /*supported*/) {
    const auto dragged = currentIndex();
    if (!dragged.flags().testFlag(Qt::ItemIsDragEnabled)) return;
    auto* const drag = MakeOwned<QDrag>(this);  // Qt deletes it when it has ended
    drag->setMimeData(MakeOwned<RowDragData>(dragged));
    const auto row = visualRect(dragged);
    drag->setPixmap(viewport()->grab(row));
    drag->setHotSpot({0, row.height() / 2});
    dragging_ = true;
    drag->exec(Qt::MoveAction);
    dragging_ = false;
    DragEnded();
    TellDrop();
}

void RowDragView::Aim(QDropEvent& event) {
    const auto dragged = DraggedRow(event);
    const auto target = indexAt(event.position().toPoint());
    if (under_cursor_ != target) open_timer_.start();
    under_cursor_ = target;
    const bool ours = dragged.isValid() && dragged.model() == model() && target.isValid();
    const auto offer = ours ? OfferOf(dragged, target) : Offer::Refused;
    Highlight(offer == Offer::Highlighted ? target : QModelIndex());
    event.setDropAction(Qt::MoveAction);
    event.setAccepted(offer != Offer::Refused);
}

void RowDragView::Highlight(const QModelIndex& index) {
    highlighted_ = index;
    viewport()->update();
}

void RowDragView::dragEnterEvent(QDragEnterEvent* event) {
    event->setAccepted(DraggedRow(*event).isValid());
}

void RowDragView::dragMoveEvent(QDragMoveEvent* event) {
    QTreeView::dragMoveEvent(event);  // scrolls near the edges
    Aim(*event);
}

void RowDragView::dragLeaveEvent(QDragLeaveEvent* event) {
    QTreeView::dragLeaveEvent(event);
    open_timer_.stop();
    Highlight({});
}

void RowDragView::dropEvent(QDropEvent* event) {
    Aim(*event);
    open_timer_.stop();
    Highlight({});
    if (!event->isAccepted()) return;
    dropped_ = DraggedRow(*event);
    dropped_on_ = under_cursor_;
    if (!dragging_) TellDrop();
}

void RowDragView::TellDrop() {
    const auto tell = [this, row = std::exchange(dropped_, QPersistentModelIndex()),
                       target = std::exchange(dropped_on_, QPersistentModelIndex())] {
        if (row.isValid() && target.isValid()) Dropped(row, target);
    };
    later_.Call(tell);
}

void RowDragView::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    if (highlighted_.isValid() && highlighted_ == index) {
        auto colour = option.palette.color(QPalette::Highlight);
        colour.setAlphaF(kHighlightOpacity);
        painter->fillRect(option.rect, colour);
    }
    QTreeView::drawRow(painter, option, index);
}

}  // namespace velto
