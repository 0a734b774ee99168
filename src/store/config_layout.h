// The lines of a configuration file: where its options stand, and all that stands around them.
#pragma once

#include <string>
#include <string_view>

#include "store/config_file.h"
#include "store/option_texts.h"

namespace velto {

// A new file differs a little from a saved one: a few comments, and a blank behind every value.
enum class FileForm { Saved, New };

// A file of this form with these options. `plugin_lines` are the lines of the plug-in section, each
// with its line end. The mark of a portable file is written only if it has a text.
CConfigFile LayOut(const OptionTexts& texts, FileForm form, std::string_view plugin_lines);

// The three lines above the settings of a kind of plug-ins: "GPU", "CDR" or "SPU".
std::string PluginBanner(std::string_view kind);

}  // namespace velto
