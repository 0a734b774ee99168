#include "shell/tree/epsxe_tree.h"

#include <utility>

#include "platform/files.h"
#include "platform/message_box.h"
#include "shell/tree/deletion.h"
#include "shell/tree/group_lists.h"
#include "shell/tree/group_rewrite.h"
#include "shell/tree/name_rules.h"
#include "shell/tree/tree_builder.h"

namespace velto {
namespace {

using platform::BoxIcon;

void ReportRenameRefusal(const std::string& file, const std::string& reason) {
    platform::Report("Unable to rename " + file + ": " + reason);
}

bool ConfirmDeletion(const TreeItem& item) {
    if (item.kind() != NodeKind::Group) {
        return platform::ConfirmLoss("Are you sure you wish to delete this file?",
                                     "Confirm Delete");
    }
    return platform::ConfirmLoss(
        "This action will delete all configurations contained within this group. \nDo you wish to "
        "continue?",
        "Remove Group?");
}

}  // namespace

CEpsxeTree::CEpsxeTree(CVeltoDoc& document, TreeWindow& window, PageTable pages)
    : document_(document), window_(window), pages_(pages) {
    for (const auto& row : pages_) {
        if (row.of == PageOf::OwnNode) own_pages_.push_back(&row);
    }
}

const PageRow& CEpsxeTree::RowOf(const TreeItem& item) const {
    if (item.page != nullptr) return *item.page;
    if (item.node == &nodes_.root()) return RowFor(pages_, PageOf::Root);
    const bool configuration = item.kind() == NodeKind::Configuration;
    return RowFor(pages_, configuration ? PageOf::Configuration : PageOf::Group);
}

int CEpsxeTree::PageNumber(const TreeItem& item) const {
    // A file of the root's name can't be loaded: it has no page of its own either.
    const bool root = item.page == nullptr && item.node->text == kRootGroup;
    return root ? RowFor(pages_, PageOf::Root).number : RowOf(item).number;
}

void CEpsxeTree::OnUpdate() {
    auto root = BuildTree(GroupLists::Read(document_.settings), document_.configDir);
    selected_ = {};
    lastSelected = {};
    nodes_.Rebuild(std::move(root));
    window_.Expand(nodes_.root());
    Select({&nodes_.root()});
}

std::string CEpsxeTree::GetSelectedConfigName() const {
    return selected_.node == nullptr ? std::string() : selected_.node->text;
}

std::string CEpsxeTree::GetSelectedConfigFile() const {
    if (selected_.kind() == NodeKind::Group) {
        platform::Report("No Configuration has been selected");
        return {};
    }
    return ConfigFolder::FileOf(GetSelectedConfigName());
}

bool CEpsxeTree::Select(const TreeItem& item) {
    if (item.node == nullptr) return false;
    if (item == selected_ || Enter(item)) return true;
    const TreeItem back = lastSelected.node != nullptr ? lastSelected : TreeItem{&nodes_.root()};
    if (!Enter(back)) {
        // Its file can't be read any more. The record is still the one that was read from it.
        window_.Selected(back);
    }
    return false;
}

bool CEpsxeTree::SelectByName(const std::string& name, NodeKind kind) {
    return Select({nodes_.Find(name, kind)});
}

// On the way back as well: the document counts on the load of a configuration that it refused to
// leave.
bool CEpsxeTree::Enter(const TreeItem& item) {
    selected_ = item;
    if (!MayEnter(item)) return false;
    lastSelected = item;
    window_.Selected(item);
    window_.PostPage(PageNumber(item));
    return true;
}

bool CEpsxeTree::MayEnter(const TreeItem& item) {
    const auto from = lastSelected.kind();
    if (item.kind() == NodeKind::Group) {
        return from == NodeKind::Group || !document_.WarnIfDirty();
    }
    const bool another_page =
        lastSelected.node == item.node && (item.kind() == NodeKind::Page || from == NodeKind::Page);
    return another_page || !document_.LoadConfig(GetSelectedConfigName());
}

// A file that appeared behind the tree's back, or a group that isn't in it, is met by reading
// everything anew.
void CEpsxeTree::AddConfiguration(const std::string& name, const std::string& group) {
    if (nodes_.Find(name, NodeKind::Configuration) != nullptr) {
        OnUpdate();
    } else {
        const auto* const parent = nodes_.Find(group, NodeKind::Group);
        nodes_.Insert(parent != nullptr ? *parent : nodes_.root(),
                      MakeNode(NodeKind::Configuration, name));
    }
    SelectByName(name, NodeKind::Configuration);
}

void CEpsxeTree::AddGroup(const std::string& name, const std::string& parent) {
    auto& settings = document_.settings;
    // In lists of different lengths a new entry wouldn't meet its parent. An empty one may be one
    // that couldn't be read.
    const auto before = GroupLists::Read(settings);
    const bool readable = !before.groups.empty() && !before.parents.empty();
    if (readable && before.groups.size() != before.parents.size()) {
        GroupLists::Of(nodes_.root()).Store(settings);
    }
    settings.AddGroup(name, parent);
    if (!GroupLists::Read(settings).Holds(name)) return;

    if (const auto* const above = nodes_.Find(parent, NodeKind::Group)) {
        nodes_.Insert(*above, MakeNode(NodeKind::Group, name));
    } else {
        OnUpdate();
    }
    SelectByName(name, NodeKind::Group);
}

// Neither a page nor the root, nor a file of the root's name, which can't be loaded.
bool CEpsxeTree::CanChange(const TreeItem& item) {
    return item.node != nullptr && item.page == nullptr && item.node->text != kRootGroup;
}

bool CEpsxeTree::Rename(const TreeItem& item, const std::string& text) {
    if (!CanChange(item) || text.empty()) return false;
    if (!CheckCharacters(text) || !CheckNotReserved(text)) return false;
    return item.kind() == NodeKind::Configuration ? RenameConfiguration(*item.node, text)
                                                  : RenameGroup(*item.node, text);
}

bool CEpsxeTree::RenameConfiguration(const TreeNode& node, const std::string& text) {
    const auto& folder = document_.configDir;
    if (folder.Find(text)) {
        platform::Report("Cannot Rename.  A Configuration with this name already exists",
                         "Name Exists", BoxIcon::Warning);
        return false;
    }
    const auto from = folder.Spelled(node.text);
    const auto to = folder.Target(text);
    const auto renamed =
        to.ok() ? platform::Files().Rename(folder.PathOf(from), to.value()) : to.status();
    if (!renamed.ok()) {
        ReportRenameRefusal(from, renamed.error().text);
        return false;
    }
    // Unsaved changes stay in hand, for the new name.
    if (document_.NameInHand() == node.text) document_.FollowRename(text);
    SetText(node, text);
    return true;
}

// The files change before the lists: what a kill leaves in between is mended by the same rename.
bool CEpsxeTree::RenameGroup(const TreeNode& node, const std::string& text) {
    auto lists = GroupLists::Read(document_.settings);
    if (lists.Holds(text)) {
        platform::Report("Cannot Rename.  A group with this name already exists", "Group Exists",
                         BoxIcon::Warning);
        return false;
    }
    if (!lists.Rename(node.text, text, node.parent->text) || !RewriteFiles(node, text)) {
        return false;
    }
    FollowInHand(node.text, text);
    if (!lists.Store(document_.settings)) {
        OnUpdate();
        return false;
    }
    SetText(node, text);
    return true;
}

// Edits in hand stay unsaved, and the file is what the document knows.
void CEpsxeTree::FollowInHand(const std::string& from, const std::string& to) {
    if (document_.fileGroup == from) document_.fileGroup = to;
    if (auto text = WithGroup(document_.LoadedFile(), from, to)) {
        document_.FollowRewrite(CConfigFile(*std::move(text)));
    }
}

bool CEpsxeTree::RewriteFiles(const TreeNode& group, const std::string& text) {
    const auto rewrite = RewriteGroup(document_.configDir, group, text);
    if (rewrite.end == GroupRewrite::End::Done) return true;
    if (rewrite.end != GroupRewrite::End::Stopped) {
        ReportRenameRefusal(rewrite.file, rewrite.reason);
    }
    if (rewrite.end == GroupRewrite::End::Broken) OnUpdate();
    return false;
}

void CEpsxeTree::SetText(const TreeNode& node, const std::string& text) {
    nodes_.SetText(node, text);
    document_.UpdatePages();  // they tell the name
}

void CEpsxeTree::OnDelete() {
    const auto target = selected_;
    if (target.node == nullptr || !document_.GiveUpChanges()) return;
    if (!ConfirmDeletion(target)) return;
    if (target.kind() == NodeKind::Group) {
        DeleteGroup(document_.configDir, document_.settings, *target.node);
    } else {
        DeleteConfiguration(document_.configDir, target.node->text);
    }
    OnUpdate();
    document_.UpdatePages();
}

bool CEpsxeTree::IsDropTarget(const TreeNode& dragged, const TreeItem& item) {
    return item.node != nullptr && item.kind() == NodeKind::Group && item.node->parent != nullptr &&
           item.node != dragged.parent && !IsWithin(*item.node, dragged);
}

bool CEpsxeTree::Drop(const TreeNode& dragged, const TreeItem& target) {
    if (!CanChange({&dragged}) || target.node == nullptr) return false;
    if (target.kind() != NodeKind::Group || IsWithin(*target.node, dragged)) return false;
    if (document_.dirty) {
        platform::Report("Unable to move item. You have not saved your current changes.",
                         "Changes pending", BoxIcon::Warning);
        return false;
    }
    return dragged.kind == NodeKind::Configuration ? MoveConfiguration(dragged, *target.node)
                                                   : MoveGroup(dragged, *target.node);
}

bool CEpsxeTree::MoveConfiguration(const TreeNode& node, const TreeNode& target) {
    // What is selected already isn't loaded by that.
    const bool was_selected = selected_.node == &node;
    if (!Select({&node}) || (was_selected && !document_.Reload())) return false;
    if (!document_.IsInHand(node.text)) return false;
    const auto before = std::exchange(document_.fileGroup, target.text);
    if (!document_.OnApply()) {
        document_.fileGroup = before;
        return false;
    }
    Move(node, target);
    return true;
}

bool CEpsxeTree::MoveGroup(const TreeNode& node, const TreeNode& target) {
    Move(node, target);
    if (GroupLists::Of(nodes_.root()).Store(document_.settings)) return true;
    OnUpdate();
    return false;
}

// What is selected stays so: the nodes remain the same.
void CEpsxeTree::Move(const TreeNode& node, const TreeNode& target) {
    nodes_.Move(node, target);
    window_.Expand(target);
    window_.Selected(selected_);
    document_.UpdatePages();  // a group's page tells how many configurations it has
}

}  // namespace velto
