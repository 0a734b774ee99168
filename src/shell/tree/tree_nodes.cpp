#include "shell/tree/tree_nodes.h"

#include <algorithm>
#include <utility>

#include "platform/ascii.h"
#include "shell/panes/panes.h"
#include "store/config_record.h"

namespace velto {
namespace {

const TreeNode* LastMatch(const TreeNode& node, const std::string& name, NodeKind kind) {
    for (std::size_t row = node.children.size(); row-- > 0;) {
        if (const auto* match = LastMatch(*node.children[row], name, kind)) return match;
    }
    return node.kind == kind && node.text == name ? &node : nullptr;
}

void Renumber(const TreeNode& parent, std::size_t from) {
    for (std::size_t row = from; row < parent.children.size(); ++row) {
        parent.children[row]->row = row;
    }
}

}  // namespace

std::unique_ptr<TreeNode> MakeNode(NodeKind kind, std::string text) {
    auto node = std::make_unique<TreeNode>();
    node->kind = kind;
    node->text = std::move(text);
    return node;
}

std::unique_ptr<TreeNode> MakeRoot() {
    return MakeNode(NodeKind::Group, std::string(kRootGroup));
}

TreeNode& Append(TreeNode& parent, std::unique_ptr<TreeNode> node) {
    node->parent = &parent;
    node->row = parent.children.size();
    return *parent.children.emplace_back(std::move(node));
}

void SortChildren(TreeNode& parent) {
    std::stable_sort(
        parent.children.begin(), parent.children.end(),
        [](const auto& a, const auto& b) { return platform::LessIgnoringCase(a->text, b->text); });
    Renumber(parent, 0);
}

std::size_t CountConfigurations(const TreeNode& node) {
    std::size_t count = node.kind == NodeKind::Configuration ? 1 : 0;
    for (const auto& child : node.children) count += CountConfigurations(*child);
    return count;
}

bool IsWithin(const TreeNode& node, const TreeNode& group) {
    const auto* at = &node;
    while (at != nullptr && at != &group) at = at->parent;
    return at == &group;
}

NodeKind TreeItem::kind() const {
    if (node == nullptr) return NodeKind::Group;
    return page == nullptr ? node->kind : NodeKind::Page;
}

std::string TreeItem::text() const {
    if (node == nullptr) return {};
    return page == nullptr ? node->text : std::string(page->text);
}

const TreeNode* TreeNodes::Find(const std::string& name, NodeKind kind) const {
    return LastMatch(*root_, name, kind);
}

void TreeNodes::Rebuild(std::unique_ptr<TreeNode> root) {
    listener_->OnRebuild([&] { root_ = std::move(root); });
}

void TreeNodes::Insert(const TreeNode& parent, std::unique_ptr<TreeNode> node) {
    auto& group = Own(parent);
    listener_->OnInsert(group, group.children.size(), [&] { Append(group, std::move(node)); });
    listener_->OnSort(group, [&] { SortChildren(group); });
}

void TreeNodes::Move(const TreeNode& node, const TreeNode& target) {
    Insert(target, Take(Own(node)));
}

void TreeNodes::SetText(const TreeNode& node, std::string text) {
    Own(node).text = std::move(text);
    listener_->OnText(node);
}

// What others hold as a constant is changed where it hangs.
TreeNode& TreeNodes::Own(const TreeNode& node) {
    return node.parent == nullptr ? *root_ : *node.parent->children[node.row];
}

std::unique_ptr<TreeNode> TreeNodes::Take(TreeNode& node) {
    auto& parent = *node.parent;
    const auto row = node.row;
    std::unique_ptr<TreeNode> taken;
    listener_->OnRemove(parent, row, [&] {
        taken = std::move(parent.children[row]);
        parent.children.erase(parent.children.begin() + static_cast<std::ptrdiff_t>(row));
        Renumber(parent, row);
    });
    return taken;
}

}  // namespace velto
