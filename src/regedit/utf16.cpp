#include "regedit/utf16.h"

namespace velto::regedit {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

constexpr bool IsHighSurrogate(std::uint32_t unit) {
    return (unit & 0xFC00U) == 0xD800U;
}
constexpr bool IsLowSurrogate(std::uint32_t unit) {
    return (unit & 0xFC00U) == 0xDC00U;
}

void AppendUtf8(std::uint32_t code, std::string& out) {
    const auto put = [&out](std::uint32_t byte) { out += static_cast<char>(byte); };
    const auto put_tail = [&](unsigned shift) { put(0x80U | ((code >> shift) & 0x3FU)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0U | (code >> 6U));
        put_tail(0);
    } else if (code < 0x10000) {
        put(0xE0U | (code >> 12U));
        put_tail(6);
        put_tail(0);
    } else {
        put(0xF0U | (code >> 18U));
        put_tail(12);
        put_tail(6);
        put_tail(0);
    }
}

}  // namespace

void Utf16Decoder::Append(std::string_view bytes, std::string& utf8) {
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (!low_byte_) {
            low_byte_ = byte;
            continue;
        }
        AppendUnit(*low_byte_ | (std::uint32_t{byte} << 8U), utf8);
        low_byte_.reset();
    }
}

void Utf16Decoder::AppendUnit(std::uint32_t unit, std::string& utf8) {
    if (high_surrogate_ && IsLowSurrogate(unit)) {
        AppendUtf8(0x10000 + ((*high_surrogate_ & 0x3FFU) << 10U) + (unit & 0x3FFU), utf8);
        high_surrogate_.reset();
        return;
    }
    if (high_surrogate_) AppendUtf8(kReplacement, utf8);
    high_surrogate_.reset();
    if (IsHighSurrogate(unit)) {
        high_surrogate_ = unit;
    } else {
        AppendUtf8(IsLowSurrogate(unit) ? kReplacement : unit, utf8);
    }
}

void Utf16Decoder::Finish(std::string& utf8) {
    if (high_surrogate_) AppendUtf8(kReplacement, utf8);
    if (low_byte_) AppendUtf8(kReplacement, utf8);
    high_surrogate_.reset();
    low_byte_.reset();
}

std::string Utf16ToUtf8(std::string_view bytes) {
    std::string utf8;
    Utf16Decoder decoder;
    decoder.Append(bytes, utf8);
    decoder.Finish(utf8);
    return utf8;
}

}  // namespace velto::regedit
