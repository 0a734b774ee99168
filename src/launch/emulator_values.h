// What the emulator reads from the registry at its start: one table of values, filled from a
// configuration.
//
// The emulator knows only one set of values. Whoever launches it (the direct run from a file,
// the editor from its record) fills an EmulatorSettings and writes it as one transaction.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace velto {

// A configuration as far as the emulator's values go. The fields are named like the options of a
// configuration file.
struct EmulatorSettings {
    bool enablePPF = false;
    std::string bios;
    char driveLetter = '0';  // '0': the first drive
    std::string cdrFileName;
    std::string region;
    std::string memcard1;
    std::string memcard2;
    bool enableCDDA = false;
    std::string spuFileName;
    bool enableSpuIRQ = false;
    bool enableXA = false;
    bool storeSubChannel = false;
    bool storeSubChannelLG = false;
    bool readSubChannel = false;
    std::string gpuFileName;
    std::string netFileName;
    std::string padAxis;
    std::string bMotorType;
    std::string motorType;
    std::string sMotorType;
    std::string padType;
    std::string keys1;
    std::string keys2;
    std::string keys3;
    std::string keys4;
    bool multiTap = false;

    // The CD plug-in reads image files and takes its image from `autorun`.
    bool imagePlugin = false;
    std::string imageFileName;
};

// The value names, in the order in which they are written.
std::vector<std::string_view> EmulatorValueNames();

// All values of the table, as strings of `Software\epsxe\config`, and with the image plug-in
// `autorun` of its own key.
std::vector<platform::RegistryWrite> EmulatorValues(const EmulatorSettings& settings);

// The arguments that a configuration gives: `commandLine`, where `NULL` counts as empty, and with
// the internal image driver " -loadbin " and the image's path between double quotes behind it.
std::string EmulatorArguments(const std::string& commandLine, bool internalIso,
                              const std::string& imageFileName);

// With the flag that starts the emulator without its own window in front.
std::string WithoutGui(const std::string& arguments);

}  // namespace velto
