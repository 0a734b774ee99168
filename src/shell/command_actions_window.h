// The commands as actions of menus, tool bar and tray menu.
#pragma once

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <functional>
#include <map>

#include "shell/commands.h"

namespace velto {

class CommandActions {
  public:
    // Each action belongs to `owner` and calls `run`. The keys work in all of its window; those of
    // the tree alone in the widgets that get the action.
    CommandActions(QWidget& owner, const std::function<void(Command)>& run);

    QAction& operator[](Command command) const { return *actions_.at(command); }

    void FillMenuBar(QMenuBar& bar) const;
    // Its buttons can be reached by the Tab key.
    void FillToolBar(QToolBar& bar) const;
    // Entries of their own, as their texts differ. `is_on` tells the check marks each time the
    // menu opens.
    static void FillTrayMenu(QMenu& menu, const std::function<void(Command)>& run,
                             const std::function<bool(Command)>& is_on);

  private:
    std::map<Command, QAction*> actions_;
};

}  // namespace velto
