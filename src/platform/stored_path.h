// Paths as settings and configurations hold them: written by the user's system, `C:\emu\a.exe`
// as well as `/home/u/emu/a.exe`. They are never rewritten; these functions read them.
//
// Text that begins with "/" is cut at "/". Other text is cut at "\", or at "/" if it has no "\".
#pragma once

#include <string>
#include <string_view>

namespace velto::platform {

// The separator that `stored` is cut at.
char StoredSeparator(std::string_view stored);

// Everything up to and including the last separator; empty if there is none.
std::string StoredFolder(std::string_view stored);

// The path to open. A drive letter goes through the drive table; in text that doesn't begin with
// "/" backslashes become slashes; each component that isn't there in this spelling is looked up
// without regard to case. What isn't found keeps its spelling. Empty text stays empty.
std::string HostPath(std::string_view stored);

}  // namespace velto::platform
