// Deleting configurations, alone or with the groups that hold them. The user has agreed already.
//
// What can't be deleted is reported, and stays where files and lists have it: the caller reads the
// tree anew.
#pragma once

#include <string>

#include "shell/tree/tree_nodes.h"
#include "store/config_folder.h"
#include "store/velto_settings.h"

namespace velto {

void DeleteConfiguration(const ConfigFolder& folder, const std::string& name);

// All that is below the group, depth first, up to the first file that can't be deleted or until
// the user stops it. A group leaves the lists when nothing is left in it.
void DeleteGroup(const ConfigFolder& folder, CVeltoSettings& settings, const TreeNode& group);

}  // namespace velto
