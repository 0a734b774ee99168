// What the commands do.
//
// Whoever has the means for a command registers it: the main frame, its window, and the features
// that the editor is made of. Import, Export, CdImager, MagicCfg and AutoplayDefault are still to
// come. Who registers outlives the last run.
#pragma once

#include <functional>
#include <map>

#include "shell/commands.h"

namespace velto {

class CommandHandlers {
  public:
    void Register(Command command, std::function<void()> act);
    // Each run sets the opposite of what is.
    void RegisterToggle(Command toggle, std::function<bool()> is_on, std::function<void(bool)> set);

    // False if nobody has registered the command.
    bool Run(Command command) const;
    bool IsOn(Command toggle) const;

  private:
    std::map<Command, std::function<void()>> actions_;
    std::map<Command, std::function<bool()>> is_on_;  // of toggles
};

}  // namespace velto
