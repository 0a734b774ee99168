#include "shell/tree/epsxe_tree_model.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "widgets/text.h"

namespace velto {
namespace {

QString KindOf(const TreeItem& item) {
    switch (item.kind()) {
        case NodeKind::Group:
            return "Group";
        case NodeKind::Configuration:
            return "Configuration";
        case NodeKind::Page:
            return "Page";
    }
    return {};
}

}  // namespace

CEpsxeTreeModel::CEpsxeTreeModel(Edited edited, QObject* parent)
    : QAbstractItemModel(parent), edited_(std::move(edited)) {}

void CEpsxeTreeModel::SetTree(CEpsxeTree& tree) {
    beginResetModel();
    tree_ = &tree;
    tree.SetListener(*this);
    for (const auto& row : tree.pages()) {
        images_.emplace_back(":/icons/" + FromBytes(row.icon) + ".svg");
    }
    endResetModel();
}

TreeItem CEpsxeTreeModel::ItemAt(const QModelIndex& index) const {
    if (!index.isValid()) return {};
    const auto* const above = static_cast<const TreeNode*>(index.constInternalPointer());
    if (above == nullptr) return {&tree_->nodes().root()};
    const auto row = static_cast<std::size_t>(index.row());
    if (above->kind == NodeKind::Configuration) return {above, tree_->own_pages().at(row)};
    return {above->children.at(row).get()};
}

QModelIndex CEpsxeTreeModel::IndexOf(const TreeNode& node) const {
    return createIndex(static_cast<int>(node.row), 0, node.parent);
}

QModelIndex CEpsxeTreeModel::IndexOf(const TreeItem& item) const {
    if (item.node == nullptr) return {};
    if (item.page == nullptr) return IndexOf(*item.node);
    const auto& pages = tree_->own_pages();
    const auto row = std::find(pages.begin(), pages.end(), item.page) - pages.begin();
    return createIndex(static_cast<int>(row), 0, item.node);
}

void CEpsxeTreeModel::OnRebuild(const Change& rebuild) {
    beginResetModel();
    rebuild();
    endResetModel();
}

void CEpsxeTreeModel::OnInsert(const TreeNode& parent, std::size_t row, const Change& insert) {
    beginInsertRows(IndexOf(parent), static_cast<int>(row), static_cast<int>(row));
    insert();
    endInsertRows();
}

void CEpsxeTreeModel::OnRemove(const TreeNode& parent, std::size_t row, const Change& remove) {
    beginRemoveRows(IndexOf(parent), static_cast<int>(row), static_cast<int>(row));
    remove();
    endRemoveRows();
}

// Whoever holds on to a row that moves finds its node behind the sort as well.
void CEpsxeTreeModel::OnSort(const TreeNode& parent, const Change& sort) {
    const QList<QPersistentModelIndex> within{IndexOf(parent)};
    emit layoutAboutToBeChanged(within, VerticalSortHint);
    QModelIndexList before;
    std::vector<const TreeNode*> held;
    for (const auto& index : persistentIndexList()) {
        if (index.constInternalPointer() != &parent) continue;
        before += index;
        held.push_back(ItemAt(index).node);
    }
    sort();
    QModelIndexList after;
    for (const auto* const node : held) after += IndexOf(*node);
    changePersistentIndexList(before, after);
    emit layoutChanged(within, VerticalSortHint);
}

void CEpsxeTreeModel::OnText(const TreeNode& node) {
    const auto index = IndexOf(node);
    emit dataChanged(index, index);
}

QModelIndex CEpsxeTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || row < 0 || row >= rowCount(parent)) return {};
    return createIndex(row, 0, ItemAt(parent).node);
}

QModelIndex CEpsxeTreeModel::parent(const QModelIndex& index) const {
    const auto* const above = static_cast<const TreeNode*>(index.constInternalPointer());
    return above == nullptr ? QModelIndex() : IndexOf(*above);
}

int CEpsxeTreeModel::rowCount(const QModelIndex& parent) const {
    if (tree_ == nullptr) return 0;
    if (!parent.isValid()) return 1;
    const auto item = ItemAt(parent);
    if (item.page != nullptr) return 0;
    const auto& node = *item.node;
    return static_cast<int>(node.kind == NodeKind::Configuration ? tree_->own_pages().size()
                                                                 : node.children.size());
}

int CEpsxeTreeModel::columnCount(const QModelIndex& /*parent*/) const {
    return 1;
}

Qt::ItemFlags CEpsxeTreeModel::flags(const QModelIndex& index) const {
    const auto item = ItemAt(index);
    if (item.node == nullptr) return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    flags.setFlag(Qt::ItemIsEditable, CEpsxeTree::CanChange(item));
    flags.setFlag(Qt::ItemIsDragEnabled, CEpsxeTree::CanChange(item));
    flags.setFlag(Qt::ItemIsDropEnabled, item.kind() == NodeKind::Group);
    flags.setFlag(Qt::ItemNeverHasChildren, item.page != nullptr);
    return flags;
}

QVariant CEpsxeTreeModel::data(const QModelIndex& index, int role) const {
    const auto item = ItemAt(index);
    if (item.node == nullptr) return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
        case Qt::AccessibleTextRole:
            return FromBytes(item.text());
        case Qt::DecorationRole:
            return images_.at(static_cast<std::size_t>(tree_->RowOf(item).number));
        case Qt::AccessibleDescriptionRole:
            return KindOf(item);
        default:
            return {};
    }
}

bool CEpsxeTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const auto item = ItemAt(index);
    if (role != Qt::EditRole || item.node == nullptr) return false;
    const auto bytes = item.text();
    const auto text = value.toString();
    edited_(index, text == FromBytes(bytes) ? bytes : ToBytes(text));
    return true;
}

}  // namespace velto
