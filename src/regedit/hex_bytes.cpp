#include "regedit/hex_bytes.h"

#include "platform/ascii.h"
#include "regedit/text_blanks.h"

namespace velto::regedit {
namespace {

constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::string_view kWrap = "\\\r\n  ";
constexpr std::size_t kIndent = 2;
constexpr std::size_t kColumns = 80;

// Takes one or two digits from the front of `text`, whose first character is one.
char TakeByte(std::string_view& text) {
    unsigned value = *HexDigit(text.front());
    text.remove_prefix(1);
    if (const auto second = text.empty() ? std::nullopt : HexDigit(text.front())) {
        value = value * 16 + *second;
        text.remove_prefix(1);
    }
    return static_cast<char>(value);
}

}  // namespace

std::optional<unsigned> HexDigit(char c) {
    const auto digit = kDigits.find(platform::ToLower(c));
    if (digit == std::string_view::npos) return {};
    return static_cast<unsigned>(digit);
}

HexEnd ReadHexBytes(std::string_view text, std::size_t limit, HexBytes& bytes) {
    while (!IsLineEnd(text)) {
        text = SkipBlanks(text);
        if (text.front() == '\\') {
            return IsLineEnd(text.substr(1)) ? HexEnd::Continues : HexEnd::Broken;
        }
        const bool comma = text.front() == ',';
        if (comma != bytes.byte_came_last) return HexEnd::Broken;
        if (comma) {
            text.remove_prefix(1);
        } else {
            if (!HexDigit(text.front()) || bytes.data.size() == limit) return HexEnd::Broken;
            bytes.data += TakeByte(text);
        }
        bytes.byte_came_last = !comma;
    }
    return HexEnd::Complete;
}

void AppendHexBytes(std::string_view data, std::size_t column, std::string& out) {
    bool first = true;
    for (const char c : data) {
        if (!first) {
            out += ',';
            ++column;
            constexpr std::size_t kByteCommaWrap = 4;
            if (column + kByteCommaWrap > kColumns) {
                out += kWrap;
                column = kIndent;
            }
        }
        first = false;
        const auto byte = static_cast<unsigned char>(c);
        out += kDigits[byte / 16U];
        out += kDigits[byte % 16U];
        column += 2;
    }
}

}  // namespace velto::regedit
