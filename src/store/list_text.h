// Lists inside one text, as settings and configurations hold them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velto {

// The items between separators; runs of separators count as one, so that no item is empty.
std::vector<std::string> SplitList(std::string_view text, char separator);

// The items, with a separator between each two.
std::string JoinList(const std::vector<std::string>& items, char separator);

// The items, with a separator behind each, also the last.
std::string TerminateList(const std::vector<std::string>& items, char separator);

}  // namespace velto
