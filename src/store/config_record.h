// A configuration in memory: a plain record, filled from a file of any version and written in the
// layout of the current one.
//
// The fields carry the names of the file's keys. Every text holds at least `NULL`, which stands
// for nothing chosen. What a record doesn't hold are the plug-in lines of its file.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "gamepad/pad_set.h"
#include "store/config_file.h"
#include "store/option_texts.h"

namespace velto {

// The root of the tree, and the group of a configuration without one. No file has that name.
inline constexpr std::string_view kRootGroup = "My Epsxe";

struct ConfigRecord {
    ConfigRecord();  // the pads have their defaults

    std::string fileVersion = "1.5.152";  // as read; a save writes the current one
    std::string fileGroup;
    std::string gpuFileName{kUnset};
    bool enableSound = false;
    bool enableCDDA = false;
    bool enableXA = false;
    bool enableSpuIRQ = false;
    std::string spuFileName{kUnset};
    std::string cdrFileName{kUnset};
    std::string imageFileName{kUnset};
    char driveLetter = '0';
    std::string region{kUnset};
    bool enablePPF = false;
    bool readSubChannel = false;
    bool storeSubChannel = false;
    bool storeSubChannelLG = false;
    std::string netFileName{kUnset};
    std::string memcard1{kUnset};
    std::string memcard2{kUnset};
    CPadSet pads;
    bool multiTap = false;
    std::string bios{kUnset};
    std::string commandLine{kUnset};
    bool autoplay = false;
    std::vector<std::string> psxIdExt;  // disc ids, in upper case

    // Derived, and in no file: the CD plug-in reads image files; the emulator's own image driver
    // is chosen.
    bool cdrIsMooby = false;
    bool cdrIsInternalIso = false;
};

// The display name of a plug-in's file; empty if no plug-in of that name is known.
using PluginNames = std::function<std::string(const std::string& fileName)>;

struct LoadedRecord {
    ConfigRecord record;
    // A key was missing or empty, and the record has a replacement for it.
    bool corrupted = false;
};

// Never fails: what the file lacks is replaced, and what its version doesn't carry has its
// defaults.
LoadedRecord ReadRecord(const CConfigFile& file, const PluginNames& display_name);

// As a file says it.
OptionTexts TextsOf(const ConfigRecord& record);

// A saved file, of which `plugin_lines` are the lines of the plug-in section, each with its line
// end. `magic` makes it a portable one.
CConfigFile WriteRecord(const ConfigRecord& record, std::string_view plugin_lines, bool magic);

// Whether the file is a portable one, which has yet to be adapted to its user.
bool IsPortable(const CConfigFile& file);

}  // namespace velto
