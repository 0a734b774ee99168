// The table of the editor's pages. A page that is added gets a row here.
#pragma once

#include "shell/panes/panes.h"

namespace velto {

PageTable Pages();

}  // namespace velto
