// The window of the configuration tree.
//
// The tree is the master of the selection. What the user clicks or steps to is told to it once the
// view has finished with the event (and, as a press may begin a drag, once the button is up); the
// view then shows what the tree selects, which is the item before if the user refuses to lose
// changes. There is always a selection.
//
// "Del" and other commands are the frame's: an action that is added to the view with the context
// Qt::WidgetShortcut works where the view has the focus.
#pragma once

#include <QAction>
#include <QList>
#include <functional>
#include <set>
#include <string>

#include "shell/tree/epsxe_tree.h"
#include "shell/tree/epsxe_tree_model.h"
#include "shell/tree/row_drag_view.h"

namespace velto {

class CEpsxeTreeView : public RowDragView, public TreeWindow {
  public:
    // `show_page` is called with 0 to 8, from the event loop.
    CEpsxeTreeView(QWidget* parent, std::function<void(int)> show_page);

    // The tree isn't owned, and shows itself through this window.
    void SetTree(CEpsxeTree& tree);
    // Stand first in the context menu, which selects its item before it opens.
    void SetContextActions(const QList<QAction*>& actions) { context_actions_ = actions; }

    // The commands "Rename" and "Move to Group..." on the selected item. Nothing for an item that
    // the tree doesn't allow them for.
    void EditLabel();
    void MoveToGroup();

    // Takes what the user has typed in a label so far, as a click elsewhere does. False if no label
    // is being edited; else its rename comes from the event loop.
    bool FinishEditing();

    // TreeWindow
    void Selected(const TreeItem& item) override;
    void Expand(const TreeNode& node) override;
    void PostPage(int page) override;

  protected:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;

    Offer OfferOf(const QModelIndex& dragged, const QModelIndex& target) const override;
    void Dropped(const QModelIndex& dragged, const QModelIndex& target) override;
    void DragEnded() override;

  private:
    void ShowModel();
    // Around a rebuild.
    void KeepExpanded();
    void ExpandAgain();
    void TellLater();
    // Tells the tree what the user chose. False if the tree went back to the item before.
    bool Tell();
    void Rename(const QModelIndex& index, const std::string& text);
    // The menu of the selected item, below it.
    void OpenMenu();
    void ShowMenu(const QPoint& where);
    // Calls `action` with each node and a text that means it through all rebuilds.
    void ForEachNode(const std::function<void(const TreeNode&, const std::string&)>& action) const;

    CEpsxeTree* tree_ = nullptr;
    CEpsxeTreeModel* model_;
    std::function<void(int)> show_page_;
    QList<QAction*> context_actions_;
    std::set<std::string> expanded_;  // during a rebuild
    bool following_ = false;          // changes of the current index aren't the user's
    bool user_chose_ = false;         // and the tree hasn't been told yet
    bool pressed_ = false;
};

}  // namespace velto
