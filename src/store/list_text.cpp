#include "store/list_text.h"

#include <algorithm>

namespace velto {

std::vector<std::string> SplitList(std::string_view text, char separator) {
    std::vector<std::string> items;
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        if (end > 0) items.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return items;
}

std::string JoinList(const std::vector<std::string>& items, char separator) {
    std::string text = TerminateList(items, separator);
    if (!text.empty()) text.pop_back();
    return text;
}

std::string TerminateList(const std::vector<std::string>& items, char separator) {
    std::string text;
    for (const auto& item : items) text.append(item) += separator;
    return text;
}

}  // namespace velto
