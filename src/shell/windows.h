// All windows of the program, as one module that is loaded when something has to be shown.
//
// The program and the module share the logic's services. The module's one function, `VeltoWindows`,
// gives the object below, which the module owns and which lives until Close.
#pragma once

#include <string>

#include "platform/message_box.h"
#include "platform/waiting.h"

namespace velto {

class Windows {
  public:
    virtual ~Windows() = default;

    // Shows boxes on the thread that asked for the windows first. Any thread may ask.
    virtual platform::MessageBoxes& Boxes() = 0;
    // Shows what is waited for on that thread.
    virtual platform::WaitingService& Waiting() = 0;

    // The editor on the configurations of this folder, a host path without a separator at its end:
    // from its preparations to its end.
    virtual void RunEditor(const std::string& configDir) = 0;

    // Gives all windows up at the end of the program. Nothing may be asked afterwards.
    virtual void Close() = 0;
};

inline constexpr const char* kWindowsFunction = "VeltoWindows";
using WindowsFunction = Windows*();

}  // namespace velto
