#include "shell/command_handlers.h"

#include <utility>

namespace velto {

void CommandHandlers::Register(Command command, std::function<void()> act) {
    actions_[command] = std::move(act);
}

void CommandHandlers::RegisterToggle(Command toggle, std::function<bool()> is_on,
                                     std::function<void(bool)> set) {
    Register(toggle, [is_on, set = std::move(set)] { set(!is_on()); });
    is_on_[toggle] = std::move(is_on);
}

bool CommandHandlers::Run(Command command) const {
    const auto found = actions_.find(command);
    if (found == actions_.end()) return false;
    found->second();
    return true;
}

bool CommandHandlers::IsOn(Command toggle) const {
    const auto found = is_on_.find(toggle);
    return found != is_on_.end() && found->second();
}

}  // namespace velto
