#include "platform/sqlite/names.h"

#include <algorithm>

namespace velto::platform {
namespace {

constexpr char kSeparator = '\\';
constexpr std::string_view kForbidden("\0\r\n", 3);

Error Malformed(std::string_view subject, std::string text) {
    return {ErrorKind::Malformed, std::string(subject), std::move(text)};
}

}  // namespace

Result<KeyPath> ParseKeyPath(std::string_view path) {
    if (path.find_first_of(kForbidden) != std::string_view::npos) {
        return Malformed(path, "a key's name holds no NUL, CR or LF");
    }
    const auto whole = path.ends_with(kSeparator) ? path.substr(0, path.size() - 1) : path;
    KeyPath components;
    for (std::size_t begin = 0; begin <= whole.size();) {
        const auto end = std::min(whole.find(kSeparator, begin), whole.size());
        components.emplace_back(whole.substr(begin, end - begin));
        if (components.back().empty() || components.back().size() > kLongestKeyName) {
            return Malformed(path, "a key's name has 1 to 255 bytes");
        }
        if (components.size() > kDeepestKey) {
            return Malformed(path, "a key has up to 512 components");
        }
        begin = end + 1;
    }
    return components;
}

Status CheckValue(std::string_view name, const RegistryValue& value) {
    if (name.find_first_of(kForbidden) != std::string_view::npos) {
        return Malformed(name, "a value's name holds no NUL, CR or LF");
    }
    if (name.size() > kLongestValueName) {
        return Malformed(name, "a value's name has up to 16383 bytes");
    }
    if (value.data.size() > kLargestValue) return Malformed(name, "a value has up to 1 MiB");
    return {};
}

}  // namespace velto::platform
