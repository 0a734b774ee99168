// What the names of groups and configurations must not be. Each test tells the user, by a message
// box, when a name fails it.
#pragma once

#include <string_view>

#include "platform/message_box.h"

namespace velto {

bool CheckNameGiven(std::string_view name, platform::BoxIcon icon);
// None of the ten characters that separate paths and entries, or that Windows keeps for itself.
bool CheckCharacters(std::string_view name);
// Not one of the names that the tree keeps for itself.
bool CheckNotReserved(std::string_view name);

}  // namespace velto
