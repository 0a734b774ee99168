#include "regedit/merge_scope.h"

#include <algorithm>

#include "platform/ascii.h"
#include "platform/registry.h"

namespace velto::regedit {

platform::Result<MergeScope> MergeScope::Read(std::string_view text) {
    MergeScope scope;
    scope.everything_ = false;
    for (std::size_t begin = 0; begin <= text.size();) {
        const auto end = std::min(text.find(';', begin), text.size());
        auto path = text.substr(begin, end - begin);
        const bool out = path.starts_with('-');
        if (out) path.remove_prefix(1);
        if (!platform::HasKnownRoot(path)) {
            return platform::Error{platform::ErrorKind::Malformed, std::string(text),
                                   "no list of keys"};
        }
        (out ? scope.without_ : scope.keys_).emplace_back(path);
        begin = end + 1;
    }
    return scope;
}

bool MergeScope::Allows(std::string_view path) const {
    return everything_ || (Holds(keys_, path) && !Holds(without_, path));
}

bool MergeScope::Holds(const std::vector<std::string>& keys, std::string_view path) {
    return std::any_of(keys.begin(), keys.end(), [&](const std::string& key) {
        const auto start = path.substr(0, key.size());
        if (!platform::EqualsIgnoringCase(start, key)) return false;
        return key.ends_with('\\') || path.size() == key.size() || path[key.size()] == '\\';
    });
}

}  // namespace velto::regedit
