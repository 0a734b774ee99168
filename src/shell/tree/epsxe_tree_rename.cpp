#include <algorithm>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/message_box.h"
#include "shell/tree/epsxe_tree.h"
#include "shell/tree/group_lists.h"
#include "shell/tree/group_rewrite.h"
#include "shell/tree/name_rules.h"

namespace velto {
namespace {

using platform::BoxIcon;

void ReportRefusal(const std::string& file, const std::string& reason) {
    platform::Report("Unable to rename " + file + ": " + reason);
}

}  // namespace

bool CEpsxeTree::CanRename(const TreeItem& item) {
    return item.node != nullptr && item.page == nullptr && item.node->text != kRootGroup;
}

bool CEpsxeTree::Rename(const TreeItem& item, const std::string& text) {
    if (!CanRename(item) || text.empty()) return false;
    if (!CheckCharacters(text) || !CheckNotReserved(text)) return false;
    return item.node->kind == NodeKind::Configuration ? RenameConfiguration(*item.node, text)
                                                      : RenameGroup(*item.node, text);
}

bool CEpsxeTree::RenameConfiguration(TreeNode& node, const std::string& text) {
    auto& files = platform::Files();
    const auto& folder = document_.configDir;
    const auto to = text + std::string(kConfigEnding);
    if (platform::FindFile(folder, to)) {
        platform::Report("Cannot Rename.  A Configuration with this name already exists",
                         "Name Exists", BoxIcon::Warning);
        return false;
    }
    const auto from = FileOf(folder, node);
    if (!platform::IsFileName(to)) {
        ReportRefusal(from, "no name of a file");
        return false;
    }
    // Unsaved changes stay in hand, for the new name.
    const bool in_hand = document_.NameInHand() == node.text;
    const auto renamed =
        files.Rename(platform::JoinPath(folder, from), platform::JoinPath(folder, to));
    if (!renamed.ok()) {
        ReportRefusal(from, renamed.error().text);
        return false;
    }
    node.text = text;
    if (in_hand) document_.FollowRename(text);
    window_.TextChanged(node);
    document_.UpdatePages();  // which tell the name
    return true;
}

// The files change before the lists: what a kill leaves in between is mended by the same rename.
bool CEpsxeTree::RenameGroup(TreeNode& node, const std::string& text) {
    auto lists = GroupLists::Read(document_.settings);
    if (lists.Holds(text)) {
        platform::Report("Cannot Rename.  A group with this name already exists", "Group Exists",
                         BoxIcon::Warning);
        return false;
    }
    const auto from = node.text;
    if (!lists.Rename(from, text, node.parent->text) || !RewriteFiles(node, text)) return false;
    if (document_.fileGroup == from) document_.fileGroup = text;
    if (!lists.Store(document_.settings)) {
        OnUpdate();
        return false;
    }
    node.text = text;
    window_.TextChanged(node);
    document_.UpdatePages();  // which tell the name
    return true;
}

bool CEpsxeTree::RewriteFiles(const TreeNode& group, const std::string& text) {
    const GroupRewriteAsks asks = {
        [&](std::size_t done, std::size_t total) {
            return window_.Progress("Renaming group " + group.text, done, total);
        },
        [&](const std::string& file) {
            const auto& inside = group.children;
            return std::any_of(inside.begin(), inside.end(), [&](const auto& child) {
                return child->kind == NodeKind::Configuration &&
                       file.size() == child->text.size() + kConfigEnding.size() &&
                       file.starts_with(child->text);
            });
        }};
    const auto rewrite = RewriteGroup(document_.configDir, group.text, text, asks);
    if (rewrite.end == GroupRewrite::End::Done) return true;
    if (rewrite.end != GroupRewrite::End::Stopped) ReportRefusal(rewrite.file, rewrite.reason);
    if (rewrite.end == GroupRewrite::End::Broken) OnUpdate();
    return false;
}

}  // namespace velto
