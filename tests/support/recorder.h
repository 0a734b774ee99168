// What a registry shows, as text to compare and to read.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/registry.h"

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

}  // namespace velto::test
