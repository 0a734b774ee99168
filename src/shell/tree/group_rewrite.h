// The configuration files of a group whose name changes: each names its group in `fileGroup`.
#pragma once

#include <optional>
#include <string>

#include "shell/tree/tree_nodes.h"
#include "store/config_file.h"
#include "store/config_folder.h"

namespace velto {

struct GroupRewrite {
    enum class End {
        Done,
        Stopped,  // by the user; no file has changed
        Refused,  // by the system; no file has changed
        Broken,   // by the system, when some files had their new content already
    };
    End end = End::Done;
    std::string file{};    // the first one refused: a file name
    std::string reason{};  // the system's text
};

// The file's text, with LF line ends, in which the key `fileGroup` names the group `to`. Nothing if
// it doesn't name `from` now.
std::optional<std::string> WithGroup(const CConfigFile& file, const std::string& from,
                                     const std::string& to);

// Rewrites all files of the folder that name this group to name `to`: new content is written beside
// them and flushed together before the first one changes. Killed at any moment, each file is the
// old one or the new one, and the same call again brings the rest. A file that can't be read stops
// it only if the tree has it in the group. The user may stop it before the first file changes.
GroupRewrite RewriteGroup(const ConfigFolder& folder, const TreeNode& group, const std::string& to);

}  // namespace velto
