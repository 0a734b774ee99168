// The lines of a registry text, read from a file piece by piece.
//
// Text is UTF-16 if it begins with the mark FF FE, and becomes UTF-8 on the way in; any other text
// keeps its bytes, less a UTF-8 mark. A line ends in CR LF or LF. Whatever the file holds, no more
// of it than one line of kLongestLine bytes is kept in memory.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/result.h"
#include "regedit/utf16.h"

namespace velto::regedit {

inline constexpr std::size_t kLongestLine = std::size_t{4} << 20;

// The text is without blanks in front of it and stays valid until the next line is asked for. Of a
// longer line than kLongestLine it is the beginning.
struct TextLine {
    std::string_view text;
    bool too_long = false;
};

class TextLines {
  public:
    // `reader` must outlive this, and stand at the start of its file.
    explicit TextLines(platform::FileReader& reader) : reader_(reader) {}

    // Nothing behind the last line. A failure to read ends the text.
    platform::Result<std::optional<TextLine>> Next();
    // From the first line on.
    bool is_utf16() const { return decoder_.has_value(); }

  private:
    platform::Result<bool> Fill();
    platform::Status ReadMark();
    void Take(std::string_view piece);
    TextLine Line();

    platform::FileReader& reader_;
    std::optional<Utf16Decoder> decoder_;
    bool started_ = false;
    bool ended_ = false;
    std::string raw_;     // as it was read, if it has to be decoded
    std::string buffer_;  // of which everything in front of next_ has been taken
    std::size_t next_ = 0;
    std::string line_;
    bool too_long_ = false;
};

}  // namespace velto::regedit
