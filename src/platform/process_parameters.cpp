#include <algorithm>
#include <string_view>

#include "platform/process.h"

namespace velto::platform {
namespace {

constexpr std::string_view kSeparators = " \t";

// How many backslashes stand at `at`.
std::size_t BackslashesAt(std::string_view text, std::size_t at) {
    return std::min(text.find_first_not_of('\\', at), text.size()) - at;
}

// The argument that begins at `at`, which is moved behind it.
std::string TakeArgument(std::string_view text, std::size_t& at) {
    std::string argument;
    bool quoted = false;
    while (at < text.size()) {
        const auto backslashes = BackslashesAt(text, at);
        at += backslashes;
        if (at == text.size() || text[at] != '"') {
            argument.append(backslashes, '\\');
            if (at == text.size()) break;
            if (!quoted && kSeparators.find(text[at]) != std::string_view::npos) break;
            argument += text[at++];
            continue;
        }
        argument.append(backslashes / 2, '\\');
        if (backslashes % 2 == 1) {
            argument += '"';
        } else if (quoted && text.substr(at + 1).starts_with('"')) {
            argument += '"';
            ++at;
        } else {
            quoted = !quoted;
        }
        ++at;
    }
    return argument;
}

}  // namespace

std::vector<std::string> SplitParameters(const std::string& parameters) {
    std::vector<std::string> result;
    for (std::size_t at = 0;;) {
        at = parameters.find_first_not_of(kSeparators, at);
        if (at == std::string::npos) return result;
        result.push_back(TakeArgument(parameters, at));
    }
}

std::string QuoteParameter(const std::string& argument) {
    std::string result = "\"";
    for (std::size_t at = 0; at < argument.size();) {
        const auto backslashes = BackslashesAt(argument, at);
        at += backslashes;
        const bool before_quote = at == argument.size() || argument[at] == '"';
        result.append(before_quote ? 2 * backslashes : backslashes, '\\');
        if (at == argument.size()) break;
        if (argument[at] == '"') result += '\\';
        result += argument[at++];
    }
    return result + '"';
}

}  // namespace velto::platform
