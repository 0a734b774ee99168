#include "platform/stored_path.h"

#include <algorithm>
#include <utility>

#include "platform/ascii.h"
#include "platform/drives.h"
#include "platform/files.h"

namespace velto::platform {
namespace {

bool HasDriveLetter(std::string_view stored) {
    return stored.size() >= 2 && stored[1] == ':' && ToUpper(stored[0]) >= 'A' &&
           ToUpper(stored[0]) <= 'Z';
}

// The entry of `folder` that `component` names in any case of letters; itself if there is none.
std::string Spelling(FileService& files, const std::string& folder, std::string_view component) {
    const auto listed = files.List(folder);
    std::string best(component);
    bool found = false;
    if (!listed.ok()) return best;
    for (const auto& name : listed.value()) {
        if (!EqualsIgnoringCase(name, component) || (found && !(name < best))) continue;
        best = name;
        found = true;
    }
    return best;
}

// Puts `rest` behind `base`, component by component.
std::string Resolve(FileService& files, std::string base, std::string_view rest) {
    while (!rest.empty()) {
        const auto slash = std::min(rest.find('/'), rest.size());
        const auto component = rest.substr(0, slash);
        rest.remove_prefix(std::min(slash + 1, rest.size()));
        if (component.empty()) continue;
        // Mostly the spelling is right, and no folder has to be listed.
        auto next = JoinPath(base, component);
        if (!files.Info(next).ok()) {
            next = JoinPath(base, Spelling(files, base.empty() ? "." : base, component));
        }
        base = std::move(next);
    }
    return base;
}

}  // namespace

char StoredSeparator(std::string_view stored) {
    if (stored.starts_with('/')) return '/';
    const bool only_slashes =
        stored.find('\\') == std::string_view::npos && stored.find('/') != std::string_view::npos;
    return only_slashes ? '/' : '\\';
}

std::string StoredFolder(std::string_view stored) {
    return std::string(stored.substr(0, stored.rfind(StoredSeparator(stored)) + 1));
}

std::string HostPath(std::string_view stored) {
    auto& files = Files();
    if (stored.starts_with('/')) return Resolve(files, "/", stored);

    std::string text(stored);
    std::replace(text.begin(), text.end(), '\\', '/');
    if (HasDriveLetter(text)) {
        return Resolve(files, Drives().Folder(text[0]), text.substr(2));
    }
    std::string base;
    if (text.starts_with('/')) base = "/";
    return Resolve(files, std::move(base), text);
}

}  // namespace velto::platform
