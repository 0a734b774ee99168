#include <utility>

#include "platform/message_box.h"
#include "shell/tree/epsxe_tree.h"
#include "shell/tree/group_lists.h"

namespace velto {
namespace {

bool IsWithin(const TreeNode& node, const TreeNode& group) {
    const auto* at = &node;
    while (at != nullptr && at != &group) at = at->parent;
    return at == &group;
}

}  // namespace

bool CEpsxeTree::CanDrag(const TreeItem& item) {
    // A file of the root's name can't be loaded.
    return item.node != nullptr && item.page == nullptr && item.node->text != kRootGroup;
}

bool CEpsxeTree::IsDropTarget(const TreeNode& dragged, const TreeItem& item) {
    return item.node != nullptr && NodeKind(item) == NodeKind::Group &&
           item.node->parent != nullptr && item.node != dragged.parent &&
           !IsWithin(*item.node, dragged);
}

bool CEpsxeTree::Drop(TreeNode& dragged, const TreeItem& target) {
    if (!CanDrag({&dragged}) || target.node == nullptr) return false;
    if (NodeKind(target) != NodeKind::Group || IsWithin(*target.node, dragged)) return false;
    if (document_.dirty) {
        platform::Report("Unable to move item. You have not saved your current changes.",
                         "Changes pending", platform::BoxIcon::Warning);
        return false;
    }
    return dragged.kind == NodeKind::Configuration ? MoveConfiguration(dragged, *target.node)
                                                   : MoveGroup(dragged, *target.node);
}

bool CEpsxeTree::MoveConfiguration(TreeNode& node, TreeNode& target) {
    if (!Select({&node}) || !document_.IsInHand(node.text)) return false;
    const auto before = std::exchange(document_.fileGroup, target.text);
    if (!document_.OnApply()) {
        document_.fileGroup = before;
        return false;
    }
    Move(node, target);
    return true;
}

bool CEpsxeTree::MoveGroup(TreeNode& node, TreeNode& target) {
    Move(node, target);
    if (GroupLists::Of(*root_).Store(document_.settings)) return true;
    OnUpdate();
    return false;
}

// What is selected stays so: the nodes remain the same.
void CEpsxeTree::Move(TreeNode& node, TreeNode& target) {
    Insert(target, Take(node));
    window_.Expand(target);
    window_.Selected(selected_);
    document_.UpdatePages();  // which count
}

}  // namespace velto
