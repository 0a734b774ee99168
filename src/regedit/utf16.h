// UTF-16 in little-endian bytes, as UTF-8.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velto::regedit {

// Takes the bytes in pieces of any size. What is no UTF-16 (half of a surrogate pair, a last odd
// byte) becomes U+FFFD, the replacement character; nothing else is changed or dropped.
class Utf16Decoder {
  public:
    void Append(std::string_view bytes, std::string& utf8);
    // Behind the last piece.
    void Finish(std::string& utf8);

  private:
    void AppendUnit(std::uint32_t unit, std::string& utf8);

    std::optional<unsigned char> low_byte_;        // of a unit whose other byte is still to come
    std::optional<std::uint32_t> high_surrogate_;  // waits for its second half
};

std::string Utf16ToUtf8(std::string_view bytes);

}  // namespace velto::regedit
