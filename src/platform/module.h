// A part of the program that is loaded when it is first needed, and stays.
#pragma once

#include <string>

#include "platform/result.h"

namespace velto::platform {

// The address of an extern "C" function of the module at this absolute path.
Result<void*> LoadModule(const std::string& path, const char* function);

}  // namespace velto::platform
