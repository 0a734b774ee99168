// The plug-ins' registry branches as REGEDIT4 text, to be carried in a configuration.
//
// Of each branch its direct subkeys are dumped, with their values, in the registry's order; not
// what stands deeper or in the branch key itself. The text is not escaped: names and strings stand
// between quotes as they are, which the registry editor knows by the banners, and a line is never
// wrapped. A dump has LF line ends in memory.
//
//   "name"="text"           a string of up to 259 bytes without line end or NUL
//   "name"=hex:1,a,00,ff    binary data, a zero byte as 00
//   "name"=dword:0000002a   a 32-bit number
//
// What can't be read or written in these forms is reported by a message box, leaves an empty line,
// and doesn't stop the dump.
#pragma once

#include <string>
#include <string_view>

#include "platform/registry.h"

namespace velto {

// Below HKEY_CURRENT_USER, each with a backslash at its end.
inline constexpr std::string_view kGpuBranch = "Software\\Vision Thing\\PSEmu Pro\\GPU\\";
inline constexpr std::string_view kCdrBranch = "Software\\Vision Thing\\PSEmu Pro\\CDR\\";
inline constexpr std::string_view kSpuBranch = "Software\\Vision Thing\\PSEmu Pro\\SPU\\";

// Replaces the file at this host path by a dump of all three branches. If it can't be written, or
// wouldn't fit into a configuration with its options: a message, and the file is as before.
void DumpPluginBranches(const std::string& file);

// Appends the direct subkeys of `branch`: of each an empty line, its key line, its values. A
// branch that can't be opened has none.
void DumpBranch(std::string& to, std::string_view branch);

// Appends a line for each value of the key, a path below HKEY_CURRENT_USER.
void DumpSubkey(std::string& to, const std::string& subkey);

// The value's line, without its end. Empty after a failure. `root` ends in a backslash.
std::string FormatValue(std::string_view root, const std::string& subkey, const std::string& name,
                        platform::RegistryType type);

}  // namespace velto
