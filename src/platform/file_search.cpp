#include "platform/file_search.h"

#include <algorithm>
#include <utility>

#include "platform/ascii.h"
#include "platform/files.h"

namespace velto::platform {
namespace {

template <class Wanted>
std::vector<std::string> Search(const std::string& folder, Wanted wanted) {
    auto listed = Files().List(folder);
    if (!listed.ok()) return {};
    auto names = std::move(listed).value();
    std::erase_if(names, [&](const std::string& name) { return !wanted(name); });
    std::sort(names.begin(), names.end(), LessIgnoringCase);
    return names;
}

}  // namespace

bool IsRegular(const std::string& path) {
    const auto info = Files().Info(path);
    return info.ok() && info.value().regular;
}

bool IsFileName(std::string_view name) {
    constexpr std::string_view kSeparatorsAndNul("/\\\0", 3);
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(kSeparatorsAndNul) == std::string_view::npos;
}

std::optional<std::string> FindFile(const std::string& folder, std::string_view name) {
    if (!IsFileName(name)) return {};
    if (IsRegular(JoinPath(folder, name))) return std::string(name);
    const auto found = Search(folder, [&](const std::string& candidate) {
        return EqualsIgnoringCase(candidate, name) && IsRegular(JoinPath(folder, candidate));
    });
    if (found.empty()) return {};
    return found.front();
}

std::vector<std::string> FindFilesEndingIn(const std::string& folder, std::string_view ending) {
    auto names = FindNamesEndingIn(folder, ending);
    std::erase_if(names,
                  [&](const std::string& name) { return !IsRegular(JoinPath(folder, name)); });
    return names;
}

std::vector<std::string> FindNamesEndingIn(const std::string& folder, std::string_view ending) {
    return Search(folder, [&](std::string_view candidate) {
        return candidate.size() >= ending.size() &&
               EqualsIgnoringCase(candidate.substr(candidate.size() - ending.size()), ending);
    });
}

}  // namespace velto::platform
