// Letters, as this program knows them: 8-bit text in which only A to Z have two cases.
#pragma once

#include <string>
#include <string_view>

namespace velto::platform {

inline constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

constexpr char ToLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
constexpr char ToUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
std::string Lower(std::string_view text);
std::string Upper(std::string_view text);

bool EqualsIgnoringCase(std::string_view a, std::string_view b);

// The order of file searches: without regard to case, bytes deciding ties.
bool LessIgnoringCase(std::string_view a, std::string_view b);

// Without the white space at both ends.
std::string_view Trim(std::string_view text);

}  // namespace velto::platform
