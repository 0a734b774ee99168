// Lists of codes as configurations and the emulator's registry hold them: plain decimal numbers
// with a single comma between each two.
#pragma once

#include <string>
#include <string_view>

namespace velto {

// Takes the codes off a list from its head. Reads no further than it was asked to.
class CodeListReader {
  public:
    // The list must outlive the reader.
    explicit CodeListReader(std::string_view list) : rest_(list) {}

    // The next token's number. 0 if there is none, or if it isn't plain digits for a number of 0
    // to 2147483647; an empty token is a token too. Leading zeros do no harm.
    int Next();

  private:
    std::string_view rest_;
};

// The code as the list's last token.
void AppendCode(std::string& list, int code);

}  // namespace velto
