// Where this process lives: the user's folders and the programs beside it, from the environment.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/files.h"

namespace velto::platform {

// All paths are absolute, but for a program that was named without "/" and isn't on the PATH.
struct Environment {
    std::string program;          // this executable's own path
    std::string home;             // VELTO_HOME: the user's data folder
    std::string drives;           // VELTO_DRIVES: the folder of drive letters
    std::string runner;           // VELTO_RUNNER: starts programs of other systems; may be empty
    std::string registry_editor;  // VELTO_REGEDIT
    std::string start_folder;     // the current directory if it has a folder `config`, else `home`

    // Names and values that children are given on top of what they inherit: VELTO_HOME, and of
    // the other variables above those that this process was given.
    std::vector<std::pair<std::string, std::string>> child_variables;

    std::string ConfigFolder() const { return JoinPath(start_folder, "config"); }
    std::string RegistryFile() const { return JoinPath(home, "registry.db"); }
};

// Names the keys that one run of the registry editor may write (see regedit/merge_scope.h). Only
// the request for that run gives it; no program inherits it.
inline constexpr const char* kMergeScope = "VELTO_MERGE_SCOPE";

const Environment& HostEnvironment();

// Reads the process's environment and current directory; makes nothing.
Environment ReadEnvironment(FileService& files);

}  // namespace velto::platform
