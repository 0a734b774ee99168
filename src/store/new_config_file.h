// The text of a new configuration, which differs a little from the form of a saved one: a few other
// comments, a blank behind every value, and no plug-in lines but the banners.
#pragma once

#include <string>

#include "store/config_file.h"

namespace velto {

// A configuration of this group. Its values are the option table's, and the gamepads as the
// emulator left them in its own registry key; what isn't there is an empty value.
CConfigFile NewConfigFile(const std::string& group);

}  // namespace velto
