// The panes of the main window, as the logic knows them: the table of the pages, what a page asks
// of the program around it, and the button bar below.
//
// A page stands in one row of one table, which the tree, its icons and the panes read.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "shell/commands.h"
#include "store/velto_doc.h"

namespace velto {

class Page;

// Not owned, and alive as long as the pages are.
struct PageServices {
    CVeltoDoc& document;
    Editor& editor;
    // Runs a command as the menu does.
    std::function<void(Command)> run;
    // How many configurations the tree's selection holds.
    std::function<std::size_t()> count_selected;
};

// What in the tree shows a page: the root, a configuration or a group themselves, or a node of the
// page's own, which stands below each configuration.
enum class PageOf { Root, Configuration, Group, OwnNode };

struct PageRow {
    // Counted from 0 in the order of the table, which is that of the pages' own nodes, too.
    int number = 0;
    PageOf of = PageOf::OwnNode;
    std::string_view text{};  // of its own node
    std::string_view icon{};  // of what shows it: a name below ":/icons/"
    Page* (*make)(const PageServices& services) = nullptr;
};

// One row at least for each kind of node.
using PageTable = std::span<const PageRow>;

inline const PageRow& RowFor(PageTable pages, PageOf of) {
    return *std::find_if(pages.begin(), pages.end(),
                         [of](const PageRow& row) { return row.of == of; });
}

// The button bar.
class ButtonBar {
  public:
    virtual ~ButtonBar() = default;
    // "Apply Settings" and "Reset Settings".
    virtual void EnableApplyAndReset(bool enabled) = 0;
    // A line that says which configuration runs; an empty name removes it.
    virtual void ShowRunning(const std::string& configuration) = 0;
};

}  // namespace velto
