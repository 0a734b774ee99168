// The tree as settings and files have it: groups from the two lists, configurations from their
// folder, each in the group that its own file names.
#pragma once

#include <memory>

#include "shell/tree/group_lists.h"
#include "shell/tree/tree_nodes.h"
#include "store/config_folder.h"

namespace velto {

// The root of a tree, whose children are sorted; deeper levels have the order of lists and folder.
// However bad lists and files are, all of them are in it.
std::unique_ptr<TreeNode> BuildTree(const GroupLists& lists, const ConfigFolder& folder);

}  // namespace velto
