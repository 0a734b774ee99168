// The configuration files of a group whose name changes: each names its group in `fileGroup`.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "store/config_file.h"

namespace velto {

// The file's text, with LF line ends, in which the key names the group `to`. Nothing if it doesn't
// name `from` now.
std::optional<std::string> WithGroup(const CConfigFile& file, const std::string& from,
                                     const std::string& to);

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

struct GroupRewriteAsks {
    // `done` of `total` files are read. False stops.
    std::function<bool(std::size_t done, std::size_t total)> progress;
    // Whether a file that can't be read counts as one of the group.
    std::function<bool(const std::string& file)> belongs;
};

// Rewrites all files of the folder that name the group `from`: new content is written beside them
// and flushed together before the first one changes. Killed at any moment, each file is the old
// one or the new one, and the same call again brings the rest.
GroupRewrite RewriteGroup(const std::string& folder, const std::string& from, const std::string& to,
                          const GroupRewriteAsks& asks);

}  // namespace velto
