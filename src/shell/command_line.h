// The program's command line: one flag and one parameter behind the program's own path.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velto {

// The command line as one text: the program's path between double quotes, then the arguments,
// joined by one blank. An argument stands between double quotes only if it is empty or holds a
// blank. Nothing is escaped.
std::string CommandLineText(const std::string& program, const std::vector<std::string>& arguments);

class CVeltoCommandLine {
  public:
    // `text` begins with the program's path, as CommandLineText gives it; white space at its ends
    // is cut.
    explicit CVeltoCommandLine(std::string_view text);

    // The first flag, without its "-" or "/", and the first parameter; empty for what isn't
    // there. A parameter between double quotes may hold blanks. Anything further on the line is
    // ignored.
    void Parse(std::string& flag, std::string& parameter);

  private:
    void NextPair(std::string& flag, std::string& parameter);
    void TakeToken(std::string& out);
    void NextToken();
    bool IsFlag() const { return token_.starts_with('/') || token_.starts_with('-'); }

    std::string command_line_;
    // Views of `command_line_`: the current token, empty when the line is used up, and what stands
    // behind it.
    std::string_view token_;
    std::string_view rest_;
};

}  // namespace velto
