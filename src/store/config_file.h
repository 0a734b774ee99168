// A configuration file (`.dta`) as lines of text, with the primitives that read and write its
// options.
//
// The file serves two readers. For the registry editor it is REGEDIT4 text whose plain lines are
// the plug-ins' registry branches; for this program its lines "; key = value" are options.
// Other lines: ";#//" begins a banner of the plug-in section, any other ";#" a comment.
//
// The file is read from the disk once, when it is opened, and scanned in memory: the first line
// that holds a key wins. The object owns its text; nothing stays open.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace velto {

// What stands for "nothing chosen" in every option that holds text.
inline constexpr std::string_view kUnset = "NULL";

// Bytes: a million long lines.
inline constexpr std::size_t kLargestConfigFile = std::size_t{64} << 20;

class CConfigFile {
  public:
    // Without lines, to be written.
    CConfigFile() = default;
    // `text` has LF line ends.
    explicit CConfigFile(std::string text) : text_(std::move(text)) {}

    // Reads the regular file at `path`, a host path. Fails if it can't be read or is larger than
    // kLargestConfigFile.
    static platform::Result<CConfigFile> Open(const std::string& path);

    // The value of the first line that contains "; " + key anywhere: the line without every
    // "; " + key and every "=", and without the white space at both ends. Empty if no line does.
    // A shorter key also finds the line of a longer one, if its own is missing.
    std::string ReadEntry(std::string_view key) const;

    // Appends "; key = value" and a line end. Bytes of the value below 0x20 are written as
    // blanks, so that no value becomes a line of the registry script.
    void WriteEntry(std::string_view key, std::string_view value);

    void WriteLine(std::string_view line) { text_.append(line) += '\n'; }
    // Whole lines, with LF line ends.
    void WriteText(std::string_view lines) { text_.append(lines); }

    // The number, from 0, of the first line that contains `key` itself. If there is none: a
    // message, and -1.
    int FindEntryLine(std::string_view key) const;

    // All lines, with LF line ends.
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

}  // namespace velto
