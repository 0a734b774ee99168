// The configuration tree as Qt's views read it.
//
// An index holds the parent's node (null for the root's index) and the row below it. That tells
// every item apart, the computed pages of a configuration too, and takes no object for a row.
// The tree is not owned; it reports each of its changes through the calls below.
#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <functional>
#include <string>
#include <vector>

#include "shell/tree/epsxe_tree.h"

namespace velto {

class CEpsxeTreeModel : public QAbstractItemModel {
  public:
    // Told that the user has edited a label. The tree may not change before the editor is gone.
    using Edited = std::function<void(const QModelIndex& index, const std::string& text)>;

    CEpsxeTreeModel(Edited edited, QObject* parent);

    // Until there is one the model is empty.
    void SetTree(CEpsxeTree& tree);

    // Without a node for an index that isn't valid.
    TreeItem ItemAt(const QModelIndex& index) const;
    QModelIndex IndexOf(const TreeNode& node) const;
    QModelIndex IndexOf(const TreeItem& item) const;

    // Around each change of the tree, as TreeWindow has them.
    void BeginRebuild() { beginResetModel(); }
    void EndRebuild() { endResetModel(); }
    void BeginInsert(const TreeNode& parent, std::size_t row);
    void EndInsert() { endInsertRows(); }
    void BeginRemove(const TreeNode& parent, std::size_t row);
    void EndRemove() { endRemoveRows(); }
    void BeginSort(const TreeNode& parent);
    void EndSort(const TreeNode& parent);
    void TextChanged(const TreeNode& node);

    QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent) const override;
    int columnCount(const QModelIndex& parent) const override;
    bool hasChildren(const QModelIndex& parent) const override { return rowCount(parent) > 0; }
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  private:
    // The rows that someone holds on to while their group is sorted.
    struct SortedRow {
        QModelIndex before;
        const TreeNode* node = nullptr;
    };

    CEpsxeTree* tree_ = nullptr;
    Edited edited_;
    std::vector<QIcon> images_;  // by the number of a page
    std::vector<SortedRow> sorted_rows_;
};

}  // namespace velto
