#include "shell/tree/tree_builder.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "platform/ascii.h"
#include "platform/file_search.h"
#include "platform/files.h"
#include "store/config_file.h"

namespace velto {
namespace {

// A chain of groups as long as the settings could hold wouldn't fit on the stack of a walk.
constexpr std::size_t kDeepestGroup = 100;

std::size_t DepthOf(const TreeNode& node) {
    return node.parent == nullptr ? 0 : DepthOf(*node.parent) + 1;
}

// From the root to the node.
std::vector<std::size_t> PathOf(const TreeNode& node) {
    std::vector<std::size_t> rows;
    for (const auto* at = &node; at->parent != nullptr; at = at->parent) rows.push_back(at->row);
    std::reverse(rows.begin(), rows.end());
    return rows;
}

// Groups by name; of several, the last one in the order of the tree.
class GroupNames {
  public:
    // Nodes already here keep their order if others are added behind their siblings.
    void Add(TreeNode& group) {
        auto& last = last_[group.text];
        if (last == nullptr || PathOf(*last) < PathOf(group)) last = &group;
    }
    TreeNode* Find(const std::string& name) const {
        const auto found = last_.find(name);
        return found == last_.end() ? nullptr : found->second;
    }

  private:
    std::unordered_map<std::string, TreeNode*> last_;
};

// A group whose parent isn't there lands where the one before it did.
GroupNames BuildGroups(TreeNode& root, const GroupLists& lists) {
    GroupNames names;
    names.Add(root);
    auto* parent = &root;
    for (std::size_t i = 0; i < lists.groups.size(); ++i) {
        auto* const found = i < lists.parents.size() ? names.Find(lists.parents[i]) : nullptr;
        if (found != nullptr && DepthOf(*found) < kDeepestGroup) parent = found;
        names.Add(Append(*parent, MakeNode(NodeKind::Group, lists.groups[i])));
    }
    return names;
}

// What the last line with the key has behind its first "=".
std::string GroupIn(std::string_view text) {
    // All of each file is searched, and files hold many an "f" but few a "G".
    constexpr std::string_view kKeyBegin = "file";
    constexpr std::string_view kKeyEnd = "Group";
    auto last = std::string_view::npos;
    for (auto at = text.find(kKeyEnd); at != std::string_view::npos;
         at = text.find(kKeyEnd, at + 1)) {
        if (text.substr(0, at).ends_with(kKeyBegin)) last = at;
    }
    if (last == std::string_view::npos) return {};
    const auto begin = text.rfind('\n', last) + 1;
    const auto line = text.substr(begin, text.find('\n', last) - begin);
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) return {};
    return std::string(platform::Trim(line.substr(equals + 1)));
}

// Below the group that each names; below the root, if that isn't there or the file can't be read.
void AddConfigurations(TreeNode& root, const GroupNames& groups, const ConfigFolder& folder) {
    const auto listed = folder.List();
    if (!listed.ok()) return;
    for (const auto& file : listed.value()) {
        const auto path = folder.PathOf(file);
        const auto text = platform::ReadWhole(platform::Files(), path, kLargestConfigFile);
        if (!text.ok() && !platform::IsRegular(path)) continue;
        auto* const group = groups.Find(text.ok() ? GroupIn(text.value()) : std::string());
        Append(group != nullptr ? *group : root,
               MakeNode(NodeKind::Configuration, ConfigFolder::NameOf(file)));
    }
}

}  // namespace

std::unique_ptr<TreeNode> BuildTree(const GroupLists& lists, const ConfigFolder& folder) {
    auto root = MakeRoot();
    AddConfigurations(*root, BuildGroups(*root, lists), folder);
    SortChildren(*root);
    return root;
}

}  // namespace velto
