#include "gamepad/code_list.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace velto {
namespace {

int NumberOf(std::string_view token) {
    int number = 0;
    const auto* const end = token.data() + token.size();
    const auto read = std::from_chars(token.data(), end, number);
    const bool plain = read.ec == std::errc() && read.ptr == end && number >= 0;
    return plain ? number : 0;
}

}  // namespace

int CodeListReader::Next() {
    const auto end = std::min(rest_.find(','), rest_.size());
    const int number = NumberOf(rest_.substr(0, end));
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    return number;
}

void AppendCode(std::string& list, int code) {
    if (!list.empty()) list += ',';
    list += std::to_string(code);
}

}  // namespace velto
