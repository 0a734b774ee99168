// File search, as users know it from their system: without regard to case, regular files alone
// (links to them included), each named as it is spelled on the disk.
//
// Characters have no special meaning: a "*" in a name is a "*".
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velto::platform {

// A name that holds "/", "\" or NUL, is empty, "." or ".." names no file.
bool IsFileName(std::string_view name);

// The spelling of `name` in `folder`: the exact one first, else the first one in search order.
// Nothing if there is none, if the folder can't be read, or, without a look at the disk, if
// `name` is no file name.
std::optional<std::string> FindFile(const std::string& folder, std::string_view name);

bool IsRegular(const std::string& path);

// All files of the folder whose names end in `ending`, in search order: sorted without regard to
// case, bytes deciding ties. Empty if the folder can't be read.
std::vector<std::string> FindFilesEndingIn(const std::string& folder, std::string_view ending);
// For who opens all of them anyway, and so is told which are no files: what isn't one is among
// the names.
std::vector<std::string> FindNamesEndingIn(const std::string& folder, std::string_view ending);

}  // namespace velto::platform
