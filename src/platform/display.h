// Whether windows can be shown: asked before the window library is loaded, which ends the process
// where there is no display.
#pragma once

namespace velto::platform {

// True if QT_QPA_PLATFORM chooses how windows are shown, or the server that WAYLAND_DISPLAY or
// DISPLAY names accepts a connection. One on another machine has two seconds for it.
bool HasDisplay();

}  // namespace velto::platform
