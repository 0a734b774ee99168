#include "shell/command_line.h"

#include <algorithm>

#include "platform/ascii.h"

namespace velto {

std::string CommandLineText(const std::string& program, const std::vector<std::string>& arguments) {
    std::string text = '"' + program + '"';
    for (const auto& argument : arguments) {
        const bool quoted = argument.empty() || argument.find(' ') != std::string::npos;
        text += quoted ? " \"" + argument + '"' : " " + argument;
    }
    return text;
}

CVeltoCommandLine::CVeltoCommandLine(std::string_view text) : commandLine(platform::Trim(text)) {}

void CVeltoCommandLine::Parse(std::string& flag, std::string& parameter) {
    flag.clear();
    parameter.clear();
    rest = commandLine;
    NextToken();
    if (token.empty()) return;
    NextPair(flag, parameter);  // the program's own path
    NextPair(flag, parameter);
}

void CVeltoCommandLine::NextPair(std::string& flag, std::string& parameter) {
    flag.clear();
    parameter.clear();
    if (token.empty()) return;
    if (IsFlag()) {
        token.remove_prefix(1);
        TakeToken(flag);
        NextToken();
    }
    if (!token.empty() && !IsFlag()) {
        TakeToken(parameter);
        NextToken();
    }
}

void CVeltoCommandLine::TakeToken(std::string& out) {
    if (!token.starts_with('"')) {
        out = token;
        return;
    }
    token.remove_prefix(1);
    const char* const begin = token.data();
    while (!token.ends_with('"') && !rest.empty()) NextToken();
    const char* const end = token.data() + token.size();
    out.assign(begin, end);
    if (token.ends_with('"')) out.pop_back();
}

void CVeltoCommandLine::NextToken() {
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    token = rest.substr(0, rest.find(' '));
    rest.remove_prefix(token.size());
}

}  // namespace velto
