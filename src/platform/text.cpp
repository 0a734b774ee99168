#include "platform/text.h"

namespace velto::platform {

std::string FromDiskText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') continue;
        text += bytes[i];
    }
    return text;
}

std::string ToDiskText(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() + text.size() / 16);
    for (const char c : text) {
        if (c == '\n') bytes += '\r';
        bytes += c;
    }
    return bytes;
}

}  // namespace velto::platform
