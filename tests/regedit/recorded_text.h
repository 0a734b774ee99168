// Registry text in memory, and what a parse of it shows, as text to compare and to read.
#pragma once

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

#include "platform/files.h"
#include "platform/registry.h"
#include "regedit/text_parser.h"
#include "regedit/text_writer.h"

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

// Bytes that can't be seen as `%` and two digits.
inline std::string Visible(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string visible;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7F && c != '%') {
            visible += c;
        } else {
            visible += {'%', kDigits[byte / 16U], kDigits[byte % 16U]};
        }
    }
    return visible;
}

// A line for each key, "[path]", and for each value, "name=type:data".
class Recorder : public platform::RegistryVisitor {
  public:
    platform::Status OnKey(const std::string& path) override {
        text += "[" + Visible(path) + "]\n";
        return {};
    }
    platform::Status OnValue(const std::string& name,
                             const platform::RegistryValue& value) override {
        text += Visible(name) + "=" + std::to_string(static_cast<std::uint32_t>(value.type)) + ":" +
                Visible(value.data) + "\n";
        return {};
    }
    std::string text;
};

struct Parsed {
    bool known = false;
    std::uint64_t skipped = 0;
    std::string shown;
    bool operator==(const Parsed&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Parsed& parsed) {
    return out << (parsed.known ? "skipped " : "unknown ") << parsed.skipped << "\n"
               << parsed.shown;
}

inline Parsed Parse(std::string_view text, std::size_t piece = 4096) {
    TextReader reader(text, piece);
    Recorder recorder;
    const auto skipped = regedit::ParseRegistryText(reader, recorder);
    return {skipped.ok(), skipped.ok() ? skipped.value() : 0, std::move(recorder.text)};
}

}  // namespace velto::test
