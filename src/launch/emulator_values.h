// What the emulator reads from the registry at its start: the values of its own key, and the way
// of a configuration there.
//
// The emulator knows only one set of values. Whoever launches it (the direct run from a file,
// the editor from its record) translates the texts of the options and writes all values as one
// transaction.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/registry.h"
#include "store/option_texts.h"

namespace velto {

// All values that the option table gives, as strings of `Software\epsxe\config`. A CD plug-in that
// reads image files has its image as `autorun` of its own key. The drive letter is never
// empty.
std::vector<platform::RegistryWrite> EmulatorValues(const OptionTexts& texts, bool imagePlugin);

// Writes the values of the configuration of this name. False after a message if they can't be
// written: then the emulator has those of another configuration, and must not be started.
bool WriteEmulatorValues(const std::string& name, std::span<const platform::RegistryWrite> values);

// The arguments that a configuration gives: `commandLine`, where `NULL` counts as empty, and with
// the internal image driver " -loadbin " and the image's path between double quotes behind it.
std::string EmulatorArguments(const std::string& commandLine, bool internalIso,
                              const std::string& imageFileName);

// Says that the emulator, whose stored path is `path`, can't be started, and on standard error why.
void ReportNotStarted(const std::string& path, const platform::Error& reason);

// With the flag that starts the emulator without its own window in front.
std::string WithoutGui(const std::string& arguments);

}  // namespace velto
