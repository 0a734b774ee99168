// What a registry shows, and what its text does when it is parsed, as text to compare and to read.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/registry.h"
#include "regedit/text_parser.h"

namespace velto::test {

// Bytes that can't be seen as `%` and two digits.
inline std::string Visible(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string visible;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = byte >= 0x20 && byte < 0x7F && c != '%';
        visible +=
            plain ? std::string{c} : std::string{'%', kDigits[byte / 16U], kDigits[byte % 16U]};
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
        return at_value();
    }
    std::string text;
    std::function<platform::Status()> at_value = [] { return platform::Status(); };
};

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
