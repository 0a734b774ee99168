// The configuration tree as Qt's views read it.
//
// An index holds the parent's node (null for the root's index) and the row below it. That tells
// every item apart, the computed pages of a configuration too, and takes no object for a row.
// The model makes each change of the nodes between the signals that belong to it; the view, and
// whoever else must act around a change, listens to these.
#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <functional>
#include <string>
#include <vector>

#include "shell/tree/epsxe_tree.h"

namespace velto {

class CEpsxeTreeModel : public QAbstractItemModel, public TreeListener {
  public:
    // Told that the user has edited a label. The tree may not change before the editor is gone.
    using Edited = std::function<void(const QModelIndex& index, const std::string& text)>;

    CEpsxeTreeModel(Edited edited, QObject* parent);

    // Until there is one the model is empty. Not owned.
    void SetTree(CEpsxeTree& tree);

    // Without a node for an index that isn't valid.
    TreeItem ItemAt(const QModelIndex& index) const;
    QModelIndex IndexOf(const TreeNode& node) const;
    QModelIndex IndexOf(const TreeItem& item) const;

    // TreeListener
    void OnRebuild(const Change& rebuild) override;
    void OnInsert(const TreeNode& parent, std::size_t row, const Change& insert) override;
    void OnRemove(const TreeNode& parent, std::size_t row, const Change& remove) override;
    void OnSort(const TreeNode& parent, const Change& sort) override;
    void OnText(const TreeNode& node) override;

    QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent) const override;
    int columnCount(const QModelIndex& parent) const override;
    bool hasChildren(const QModelIndex& parent) const override { return rowCount(parent) > 0; }
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

  private:
    const CEpsxeTree* tree_ = nullptr;
    Edited edited_;
    std::vector<QIcon> images_;  // by the number of a page
};

}  // namespace velto
