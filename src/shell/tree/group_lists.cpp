#include "shell/tree/group_lists.h"

#include <algorithm>

#include "shell/tree/tree_nodes.h"
#include "store/config_record.h"

namespace velto {
namespace {

void Collect(const TreeNode& node, GroupLists& lists) {
    for (const auto& child : node.children) {
        if (child->kind != NodeKind::Group) continue;
        lists.groups.push_back(child->text);
        lists.parents.push_back(node.text);
        Collect(*child, lists);
    }
}

}  // namespace

GroupLists GroupLists::Read(const CVeltoSettings& settings) {
    return {settings.GetGroups(), settings.GetParents()};
}

GroupLists GroupLists::Of(const TreeNode& root) {
    GroupLists lists;
    Collect(root, lists);
    return lists;
}

bool GroupLists::Holds(const std::string& name) const {
    return std::find(groups.begin(), groups.end(), name) != groups.end();
}

bool GroupLists::Rename(const std::string& from, const std::string& to, const std::string& parent) {
    const auto entries = EntriesOf(from, parent);
    for (const auto entry : entries) groups[entry] = to;
    std::replace(parents.begin(), parents.end(), from, to);
    return !entries.empty();
}

bool GroupLists::Remove(const std::string& name, const std::string& parent) {
    const auto entries = EntriesOf(name, parent);
    for (std::size_t i = entries.size(); i-- > 0;) {
        const auto at = static_cast<std::ptrdiff_t>(entries[i]);
        groups.erase(groups.begin() + at);
        if (entries[i] < parents.size()) parents.erase(parents.begin() + at);
    }
    return !entries.empty();
}

bool GroupLists::Store(CVeltoSettings& settings) const {
    settings.SetGroups(groups, parents);
    return settings.GetGroups() == groups && settings.GetParents() == parents;
}

// Those with this parent; without any, those whose parent isn't known.
std::vector<std::size_t> GroupLists::EntriesOf(const std::string& name,
                                               const std::string& parent) const {
    std::vector<std::size_t> strays;
    std::vector<std::size_t> below;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (groups[i] != name) continue;
        const auto above = i < parents.size() ? parents[i] : std::string();
        if (above == parent) below.push_back(i);
        if (above != kRootGroup && !Holds(above)) strays.push_back(i);
    }
    return below.empty() ? strays : below;
}

}  // namespace velto
