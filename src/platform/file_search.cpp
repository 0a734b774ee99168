#include "platform/file_search.h"

#include <algorithm>
#include <utility>

#include "platform/ascii.h"

namespace velto::platform {
namespace {

template <class Wanted>
std::vector<std::string> Search(FileService& files, const std::string& folder, Wanted wanted) {
    auto listed = files.List(folder);
    if (!listed.ok()) return {};
    auto names = std::move(listed).value();
    std::erase_if(names, [&](const std::string& name) { return !wanted(name); });
    std::sort(names.begin(), names.end(), LessIgnoringCase);
    return names;
}

}  // namespace

bool IsRegular(FileService& files, const std::string& path) {
    const auto info = files.Info(path);
    return info.ok() && info.value().regular;
}

bool IsFileName(std::string_view name) {
    constexpr std::string_view kSeparatorsAndNul("/\\\0", 3);
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(kSeparatorsAndNul) == std::string_view::npos;
}

std::optional<std::string> FindFile(FileService& files, const std::string& folder,
                                    std::string_view name) {
    if (!IsFileName(name)) return {};
    if (IsRegular(files, JoinPath(folder, name))) return std::string(name);
    const auto found = Search(files, folder, [&](const std::string& candidate) {
        return EqualsIgnoringCase(candidate, name) && IsRegular(files, JoinPath(folder, candidate));
    });
    if (found.empty()) return {};
    return found.front();
}

std::vector<std::string> FindFilesEndingIn(FileService& files, const std::string& folder,
                                           std::string_view ending) {
    auto names = FindNamesEndingIn(files, folder, ending);
    std::erase_if(
        names, [&](const std::string& name) { return !IsRegular(files, JoinPath(folder, name)); });
    return names;
}

std::vector<std::string> FindNamesEndingIn(FileService& files, const std::string& folder,
                                           std::string_view ending) {
    return Search(files, folder, [&](std::string_view candidate) {
        return candidate.size() >= ending.size() &&
               EqualsIgnoringCase(candidate.substr(candidate.size() - ending.size()), ending);
    });
}

}  // namespace velto::platform
