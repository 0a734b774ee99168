// The direct run: one configuration, from its file to a running emulator, without a window and
// without a record of the editor.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/registry.h"
#include "store/config_file.h"

namespace velto {

// A configuration as the emulator gets it.
struct DirectConfig {
    std::vector<platform::RegistryWrite> values;
    std::string arguments;
};

// Reads what the file's version carries. Nothing if a key that it should carry is missing or
// empty, or holds a NUL or more than 65,535 bytes: a direct run repairs no file.
std::optional<DirectConfig> ReadDirectConfig(const CConfigFile& file);

// Why a portable file isn't launched: it has the paths and plug-ins of another machine.
void ReportPortable();

// Merges the plug-in lines of `<name>.dta` of the configuration folder into the registry, writes
// the emulator's values and starts the emulator, without waiting for it. True if it was started.
// Every refusal is reported by a message box. Once the file was found its plug-in lines are merged,
// and stay so if the run is refused later.
bool RunDirect(const std::string& name);

}  // namespace velto
