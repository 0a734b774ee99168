// Registry text in memory, and what a parse of it shows.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "regedit/text_parser.h"
#include "support/recorder.h"

namespace velto::test {

// A file that gives at most `piece` bytes at a time.
class TextReader : public platform::FileReader {
  public:
    explicit TextReader(std::string_view text, std::size_t piece = 4096)
        : rest_(text), piece_(piece) {}
    platform::Result<bool> Read(std::string& out, std::size_t limit) override {
        const auto taken = rest_.substr(0, std::min(limit, piece_));
        out += taken;
        rest_.remove_prefix(taken.size());
        return !taken.empty();
    }

  private:
    std::string_view rest_;
    std::size_t piece_;
};

// "skipped" and how many lines, or "unknown"; below it what was shown.
inline std::string Parse(std::string_view text, std::size_t piece = 4096) {
    TextReader reader(text, piece);
    Recorder recorder;
    const auto skipped = regedit::ParseRegistryText(reader, recorder);
    const auto first = skipped.ok() ? "skipped " + std::to_string(skipped.value()) : "unknown";
    return first + "\n" + recorder.text;
}

}  // namespace velto::test
