#include "platform/line_ends.h"

#include <algorithm>

namespace velto::platform {

std::string FromDiskText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto end = std::min(bytes.find("\r\n"), bytes.size());
        text.append(bytes.substr(0, end));
        // The line feed begins what is left.
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    return text;
}

std::string ToDiskText(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() + text.size() / 16);
    while (true) {
        const auto end = text.find('\n');
        bytes.append(text.substr(0, end));
        if (end == std::string_view::npos) return bytes;
        bytes.append("\r\n");
        text.remove_prefix(end + 1);
    }
}

}  // namespace velto::platform
