#include "shell/tree/epsxe_tree_view.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <utility>

#include "shell/tree/move_to_group_dialog.h"
#include "widgets/owned.h"
#include "widgets/text.h"

namespace velto {
namespace {

using NodeAction = std::function<void(const TreeNode&, const std::string&)>;

// Draws the image of the selected row in the colour of its text: its own may be that of the
// highlight.
class RowDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (!option->state.testFlag(QStyle::State_Selected)) return;
        const bool active = option->state.testFlag(QStyle::State_Active);
        const auto group = active ? QPalette::Active : QPalette::Inactive;
        auto image =
            option->icon.pixmap(option->decorationSize, option->widget->devicePixelRatio());
        if (image.isNull()) return;
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), option->palette.color(group, QPalette::HighlightedText));
        painter.end();
        option->icon = QIcon(image);
        option->icon.addPixmap(image, QIcon::Selected);
    }
};

// Names hold no NUL; a group and a configuration may have the same one.
void Walk(const TreeNode& node, const std::string& path, const NodeAction& action) {
    action(node, path);
    for (const auto& child : node.children) {
        const char kind = child->kind == NodeKind::Group ? '\1' : '\2';
        Walk(*child, path + '\0' + kind + child->text, action);
    }
}

}  // namespace

CEpsxeTreeView::CEpsxeTreeView(QWidget* parent, std::function<void(int)> show_page)
    : RowDragView(parent),
      model_(MakeOwned<CEpsxeTreeModel>(
          [this](const QModelIndex& index, const std::string& text) { Rename(index, text); },
          this)),
      show_page_(std::move(show_page)) {
    setAccessibleName("Configurations");
    setHeaderHidden(true);
    // The last section alone would not get narrower than its default width.
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::Stretch);
    setUniformRowHeights(true);
    // A page stands four levels deep, and is to be read in a narrow pane.
    setIndentation(indentation() * 2 / 3);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    setItemDelegate(MakeOwned<RowDelegate>(this));
    ShowModel();
    // What is selected stays in sight.
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& closed) {
        auto above = currentIndex();
        while (above.isValid() && above != closed) above = above.parent();
        if (above.isValid()) setCurrentIndex(closed);
    });
}

// When rows go, Qt's own parts choose another current index, which isn't the user's choice. They
// listen to the model since setModel: what is connected before it comes first, the rest last.
void CEpsxeTreeView::ShowModel() {
    connect(model_, &QAbstractItemModel::rowsAboutToBeRemoved, this, [this] { following_ = true; });
    connect(model_, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        following_ = true;
        KeepExpanded();
    });
    setModel(model_);
    connect(model_, &QAbstractItemModel::rowsRemoved, this, [this] { following_ = false; });
    connect(model_, &QAbstractItemModel::modelReset, this, [this] {
        following_ = false;
        ExpandAgain();
    });
}

void CEpsxeTreeView::KeepExpanded() {
    expanded_.clear();
    ForEachNode([this](const TreeNode& node, const std::string& path) {
        if (isExpanded(model_->IndexOf(node))) expanded_.insert(path);
    });
}

void CEpsxeTreeView::ExpandAgain() {
    ForEachNode([this](const TreeNode& node, const std::string& path) {
        if (expanded_.count(path) > 0) Expand(node);
    });
}

void CEpsxeTreeView::SetTree(CEpsxeTree& tree) {
    model_->SetTree(tree);
    tree_ = &tree;
    Selected(tree.GetSelectedItem());
}

void CEpsxeTreeView::EditLabel() {
    if (CEpsxeTree::CanChange(model_->ItemAt(currentIndex()))) edit(currentIndex());
}

bool CEpsxeTreeView::FinishEditing() {
    if (state() != EditingState) return false;
    setFocus();
    return true;
}

void CEpsxeTreeView::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    // Tab ends the editing, and edits no other label.
    const bool steps = hint == QAbstractItemDelegate::EditNextItem ||
                       hint == QAbstractItemDelegate::EditPreviousItem;
    RowDragView::closeEditor(editor, steps ? QAbstractItemDelegate::NoHint : hint);
}

void CEpsxeTreeView::MoveToGroup() {
    const QPersistentModelIndex moved = currentIndex();
    const auto item = model_->ItemAt(moved);
    if (!CEpsxeTree::CanChange(item)) return;
    CMoveToGroupDialog dialog(tree_->nodes().root(), *item.node, this);
    if (dialog.exec() != QDialog::Accepted || !moved.isValid()) return;
    const auto* const group = tree_->nodes().Find(dialog.group(), NodeKind::Group);
    if (group == nullptr || moved.parent() == model_->IndexOf(*group)) return;
    Dropped(moved, model_->IndexOf(*group));
}

void CEpsxeTreeView::ForEachNode(const NodeAction& action) const {
    if (tree_ != nullptr) Walk(tree_->nodes().root(), {}, action);
}

void CEpsxeTreeView::Selected(const TreeItem& item) {
    const QScopedValueRollback following(following_, true);
    user_chose_ = false;
    setCurrentIndex(model_->IndexOf(item));
}

void CEpsxeTreeView::Expand(const TreeNode& node) {
    expand(model_->IndexOf(node));
}

void CEpsxeTreeView::PostPage(int page) {
    later().Call([this, page] { show_page_(page); });
}

QItemSelectionModel::SelectionFlags CEpsxeTreeView::selectionCommand(
    const QModelIndex& index, const QEvent* /*event*/) const {
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

void CEpsxeTreeView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    RowDragView::currentChanged(current, previous);
    if (following_) return;
    user_chose_ = true;
    TellLater();
}

void CEpsxeTreeView::TellLater() {
    if (user_chose_ && !pressed_) later().Call([this] { Tell(); });
}

bool CEpsxeTreeView::Tell() {
    // While a box of the tree is open it is in the middle of a selection, and will tell its end.
    if (!user_chose_ || QApplication::activeModalWidget() != nullptr) return true;
    user_chose_ = false;
    const auto item = model_->ItemAt(currentIndex());
    return item == tree_->GetSelectedItem() || tree_->Select(item);
}

void CEpsxeTreeView::mousePressEvent(QMouseEvent* event) {
    pressed_ = event->button() == Qt::LeftButton;
    RowDragView::mousePressEvent(event);
}

void CEpsxeTreeView::mouseReleaseEvent(QMouseEvent* event) {
    pressed_ = false;
    RowDragView::mouseReleaseEvent(event);
    Tell();
}

void CEpsxeTreeView::keyPressEvent(QKeyEvent* event) {
    pressed_ = false;
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
        OpenMenu();
    } else {
        RowDragView::keyPressEvent(event);
    }
    Tell();
}

void CEpsxeTreeView::Rename(const QModelIndex& index, const std::string& text) {
    // Not at once: a box would take the focus from the editor, and end the editing twice.
    later().Call([this, renamed = QPersistentModelIndex(index), text] {
        if (renamed.isValid()) tree_->Rename(model_->ItemAt(renamed), text);
        // The click that ended the editing may have come up in front of a box.
        pressed_ = false;
        TellLater();
    });
}

RowDragView::Offer CEpsxeTreeView::OfferOf(const QModelIndex& dragged,
                                           const QModelIndex& target) const {
    const auto item = model_->ItemAt(target);
    if (CEpsxeTree::IsDropTarget(*model_->ItemAt(dragged).node, item)) return Offer::Highlighted;
    const bool root = !target.parent().isValid();
    return root && dragged.parent() != target ? Offer::Accepted : Offer::Refused;
}

void CEpsxeTreeView::Dropped(const QModelIndex& dragged, const QModelIndex& target) {
    tree_->Drop(*model_->ItemAt(dragged).node, model_->ItemAt(target));
}

void CEpsxeTreeView::DragEnded() {
    pressed_ = false;
    // A drag selects nothing.
    Selected(tree_->GetSelectedItem());
}

void CEpsxeTreeView::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard) {
        OpenMenu();
    } else if (indexAt(event->pos()).isValid() && Tell()) {
        ShowMenu(event->globalPos());
    }
}

void CEpsxeTreeView::OpenMenu() {
    if (!currentIndex().isValid() || !Tell()) return;
    scrollTo(currentIndex());
    ShowMenu(viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()));
}

void CEpsxeTreeView::ShowMenu(const QPoint& where) {
    const auto item = model_->ItemAt(currentIndex());
    QMenu menu(this);
    menu.addActions(context_actions_);
    menu.addSeparator();
    auto* const rename = menu.addAction("Re&name");
    rename->setShortcut(Qt::Key_F2);
    rename->setShortcutContext(Qt::WidgetShortcut);
    rename->setEnabled(CEpsxeTree::CanChange(item));
    auto* const move = menu.addAction("&Move to Group...");
    move->setEnabled(CEpsxeTree::CanChange(item));
    const auto* const chosen = menu.exec(where);
    if (chosen == rename) EditLabel();
    if (chosen == move) MoveToGroup();
}

bool CEpsxeTreeView::viewportEvent(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return RowDragView::viewportEvent(event);
    const auto& help = *static_cast<const QHelpEvent*>(event);
    const auto index = indexAt(help.pos());
    const auto shown = visualRect(index);
    QString text;
    if (index.isValid() && sizeHintForIndex(index).width() > shown.width()) {
        text = "<qt>" + index.data().toString().toHtmlEscaped() + "</qt>";
    }
    QToolTip::showText(help.globalPos(), text, viewport(), shown);
    return true;
}

}  // namespace velto
