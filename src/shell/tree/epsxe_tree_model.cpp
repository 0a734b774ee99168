#include "shell/tree/epsxe_tree_model.h"

#include <utility>

#include "widgets/text.h"

namespace velto {
namespace {

constexpr std::size_t kConfigurationImage = 0;
constexpr std::size_t kGroupImage = 1;
constexpr std::size_t kRootImage = 7;
constexpr std::array<const char*, 9> kImages = {
    ":/icons/tree-configuration.svg", ":/icons/tree-group.svg",    ":/icons/tree-memory-cards.svg",
    ":/icons/tree-sound.svg",         ":/icons/tree-graphics.svg", ":/icons/tree-cd-rom.svg",
    ":/icons/tree-netplay.svg",       ":/icons/tree-root.svg",     ":/icons/tree-gamepad.svg"};
// As kPageNames.
constexpr std::array<std::size_t, kPageNames.size()> kPageImages = {4, 3, 5, 6, 2, 8};

std::size_t ImageOf(const TreeItem& item) {
    if (item.page >= 0) return kPageImages.at(static_cast<std::size_t>(item.page));
    if (item.node->kind == NodeKind::Configuration) return kConfigurationImage;
    return item.node->parent == nullptr ? kRootImage : kGroupImage;
}

QString KindOf(const TreeItem& item) {
    if (item.page >= 0) return "Page";
    return item.node->kind == NodeKind::Configuration ? "Configuration" : "Group";
}

std::size_t ChildrenOf(const TreeItem& item) {
    if (item.page >= 0) return 0;
    if (item.node->kind == NodeKind::Configuration) return kPageNames.size();
    return item.node->children.size();
}

}  // namespace

CEpsxeTreeModel::CEpsxeTreeModel(Edited edited, QObject* parent)
    : QAbstractItemModel(parent), edited_(std::move(edited)) {
    for (std::size_t i = 0; i < kImages.size(); ++i) images_.at(i) = QIcon(kImages.at(i));
}

void CEpsxeTreeModel::SetTree(CEpsxeTree& tree) {
    beginResetModel();
    tree_ = &tree;
    endResetModel();
}

TreeItem CEpsxeTreeModel::ItemAt(const QModelIndex& index) const {
    if (!index.isValid()) return {};
    auto* const above = static_cast<TreeNode*>(index.internalPointer());
    if (above == nullptr) return {const_cast<TreeNode*>(&tree_->root())};
    if (above->kind == NodeKind::Configuration) return {above, index.row()};
    return {above->children.at(static_cast<std::size_t>(index.row())).get()};
}

QModelIndex CEpsxeTreeModel::IndexOf(const TreeNode& node) const {
    return createIndex(static_cast<int>(node.row), 0, node.parent);
}

QModelIndex CEpsxeTreeModel::IndexOf(const TreeItem& item) const {
    if (item.node == nullptr) return {};
    return item.page < 0 ? IndexOf(*item.node) : createIndex(item.page, 0, item.node);
}

void CEpsxeTreeModel::BeginInsert(const TreeNode& parent, std::size_t row) {
    beginInsertRows(IndexOf(parent), static_cast<int>(row), static_cast<int>(row));
}

void CEpsxeTreeModel::BeginRemove(const TreeNode& parent, std::size_t row) {
    beginRemoveRows(IndexOf(parent), static_cast<int>(row), static_cast<int>(row));
}

void CEpsxeTreeModel::BeginSort(const TreeNode& parent) {
    emit layoutAboutToBeChanged({IndexOf(parent)}, VerticalSortHint);
    for (const auto& index : persistentIndexList()) {
        if (index.internalPointer() != &parent) continue;
        sorted_rows_.push_back({index, ItemAt(index).node});
    }
}

void CEpsxeTreeModel::EndSort(const TreeNode& parent) {
    QModelIndexList before;
    QModelIndexList after;
    for (const auto& row : sorted_rows_) {
        before += row.before;
        after += IndexOf(*row.node);
    }
    sorted_rows_.clear();
    changePersistentIndexList(before, after);
    emit layoutChanged({IndexOf(parent)}, VerticalSortHint);
}

void CEpsxeTreeModel::TextChanged(const TreeNode& node) {
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
    return parent.isValid() ? static_cast<int>(ChildrenOf(ItemAt(parent))) : 1;
}

int CEpsxeTreeModel::columnCount(const QModelIndex& /*parent*/) const {
    return 1;
}

Qt::ItemFlags CEpsxeTreeModel::flags(const QModelIndex& index) const {
    const auto item = ItemAt(index);
    if (item.node == nullptr) return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    flags.setFlag(Qt::ItemIsEditable, CEpsxeTree::CanRename(item));
    flags.setFlag(Qt::ItemIsDragEnabled, CEpsxeTree::CanDrag(item));
    flags.setFlag(Qt::ItemIsDropEnabled, CEpsxeTree::NodeKind(item) == NodeKind::Group);
    flags.setFlag(Qt::ItemNeverHasChildren, item.page >= 0);
    return flags;
}

QVariant CEpsxeTreeModel::data(const QModelIndex& index, int role) const {
    const auto item = ItemAt(index);
    if (item.node == nullptr) return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
        case Qt::AccessibleTextRole:
            return FromBytes(CEpsxeTree::TextOf(item));
        case Qt::DecorationRole:
            return images_.at(ImageOf(item));
        case Qt::AccessibleDescriptionRole:
            return KindOf(item);
        default:
            return {};
    }
}

bool CEpsxeTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const auto item = ItemAt(index);
    if (role != Qt::EditRole || item.node == nullptr) return false;
    const auto bytes = CEpsxeTree::TextOf(item);
    const auto text = value.toString();
    edited_(index, text == FromBytes(bytes) ? bytes : ToBytes(text));
    return true;
}

}  // namespace velto
