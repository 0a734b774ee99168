// The bytes of a registry value as text: `0a,ff,3`, hexadecimal, with one or two digits each and
// commas between. Blanks may stand around every byte, the list may be empty or end in a comma,
// and a "\" at the end of a line continues it on the next one.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velto::regedit {

std::optional<unsigned> HexDigit(char c);

// A list under way, from its first line to its last.
struct HexBytes {
    std::string data;
    bool byte_came_last = false;  // the next one needs a comma first
};

enum class HexEnd {
    Complete,   // behind the list stands nothing, or a comment
    Continues,  // on the next line
    Broken,     // not such a list, or more than `limit` bytes in all
};

// Reads the part of a list that stands in one line, and appends its bytes.
HexEnd ReadHexBytes(std::string_view text, std::size_t limit, HexBytes& bytes);

// Writes a list behind the `column` characters that its line has already, with two digits a byte,
// wrapped by "\", CR LF and two blanks so that no line but the first is over 80 columns.
void AppendHexBytes(std::string_view data, std::size_t column, std::string& out);

}  // namespace velto::regedit
