// Blanks and comments, as registry text has them: blanks are spaces and tabs, and a comment runs
// from a semicolon to the end of its line.
#pragma once

#include <algorithm>
#include <string_view>

namespace velto::regedit {

inline constexpr std::string_view kBlanks = " \t";
inline constexpr char kComment = ';';

inline std::string_view SkipBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

inline std::string_view TrimBlanks(std::string_view text) {
    const auto last = text.find_last_not_of(kBlanks);
    return last == std::string_view::npos ? std::string_view()
                                          : SkipBlanks(text.substr(0, last + 1));
}

// Whether nothing of meaning is left of a line.
inline bool IsLineEnd(std::string_view rest) {
    const auto text = SkipBlanks(rest);
    return text.empty() || text.front() == kComment;
}

}  // namespace velto::regedit
