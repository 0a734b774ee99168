// The table of the editor's pages, without windows.
#pragma once

#include "shell/panes/panes.h"

namespace velto::test {

inline constexpr PageRow kPages[] = {
    {.number = 0, .of = PageOf::Root, .icon = "tree-group"},
    {.number = 1, .of = PageOf::Configuration, .icon = "tree-group"},
    {.number = 2, .text = "Graphics", .icon = "tree-group"},
    {.number = 3, .text = "Sound", .icon = "tree-group"},
    {.number = 4, .text = "Cd-Rom/Iso", .icon = "tree-group"},
    {.number = 5, .text = "NetPlay", .icon = "tree-group"},
    {.number = 6, .text = "MemoryCards", .icon = "tree-group"},
    {.number = 7, .of = PageOf::Group, .icon = "tree-group"},
    {.number = 8, .text = "GamePad", .icon = "tree-group"},
};

}  // namespace velto::test
