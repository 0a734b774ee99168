#include "platform/ascii.h"

#include <algorithm>

namespace velto::platform {

std::string Lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), ToLower);
    return result;
}

std::string Upper(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), ToUpper);
    return result;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return ToLower(x) == ToLower(y); });
}

bool LessIgnoringCase(std::string_view a, std::string_view b) {
    const auto byte_less = [](char x, char y) {
        return static_cast<unsigned char>(ToLower(x)) < static_cast<unsigned char>(ToLower(y));
    };
    if (std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), byte_less)) {
        return true;
    }
    return EqualsIgnoringCase(a, b) && a < b;
}

std::string_view Trim(std::string_view text) {
    const auto first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

}  // namespace velto::platform
