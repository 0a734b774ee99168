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

CVeltoCommandLine::CVeltoCommandLine(std::string_view text) : command_line_(platform::Trim(text)) {}

void CVeltoCommandLine::Parse(std::string& flag, std::string& parameter) {
    flag.clear();
    parameter.clear();
    rest_ = command_line_;
    NextToken();
    if (token_.empty()) return;
    NextPair(flag, parameter);  // the program's own path
    NextPair(flag, parameter);
}

void CVeltoCommandLine::NextPair(std::string& flag, std::string& parameter) {
    flag.clear();
    parameter.clear();
    if (token_.empty()) return;
    if (IsFlag()) {
        token_.remove_prefix(1);
        TakeToken(flag);
        NextToken();
    }
    if (!token_.empty() && !IsFlag()) {
        TakeToken(parameter);
        NextToken();
    }
}

void CVeltoCommandLine::TakeToken(std::string& out) {
    if (!token_.starts_with('"')) {
        out = token_;
        return;
    }
    token_.remove_prefix(1);
    const char* const begin = token_.data();
    while (!token_.ends_with('"') && !rest_.empty()) NextToken();
    const char* const end = token_.data() + token_.size();
    out.assign(begin, end);
    if (token_.ends_with('"')) out.pop_back();
}

void CVeltoCommandLine::NextToken() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
    token_ = rest_.substr(0, rest_.find(' '));
    rest_.remove_prefix(token_.size());
}

}  // namespace velto
