// The place of a window, for the next start of the program.
#pragma once

#include <QWidget>

#include "shell/main_frame.h"

namespace velto {

// A size that no screen has, or a place that is on none, was stored with other screens.
void MoveTo(QWidget& window, const WindowPlace& place);
// As it is when it is neither maximised nor minimised.
WindowPlace PlaceOf(const QWidget& window);

}  // namespace velto
