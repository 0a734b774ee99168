#include "store/config_folder.h"

#include <algorithm>
#include <utility>

#include "platform/file_search.h"
#include "platform/files.h"
#include "platform/message_box.h"

namespace velto {
namespace {

constexpr std::string_view kEnding = ".dta";

}  // namespace

std::string ConfigFolder::PathOf(const std::string& file) const {
    return platform::JoinPath(path_, file);
}

std::string ConfigFolder::FileOf(std::string_view name) {
    return std::string(name).append(kEnding);
}

std::string ConfigFolder::NameOf(std::string_view file) {
    return std::string(file.substr(0, file.size() - std::min(file.size(), kEnding.size())));
}

std::optional<std::string> ConfigFolder::Find(std::string_view name) const {
    return platform::FindFile(path_, FileOf(name));
}

bool ConfigFolder::CheckIsThere(const std::string& name, const std::string& subject) const {
    const auto found = Find(name);
    if (found == FileOf(name)) return true;
    if (const auto listed = List();
        !listed.ok() && listed.error().kind != platform::ErrorKind::NotFound) {
        platform::Report("Unable to read " + path_ + ": " + listed.error().text);
        return false;
    }
    const auto* const hint = found ? ". Remember that names are case sensitive." : "";
    platform::Report(subject + " does not exist" + hint, "File not found");
    return false;
}

std::string ConfigFolder::Spelled(const std::string& name) const {
    auto found = Find(name);
    return found && found->starts_with(name) ? *std::move(found) : FileOf(name);
}

platform::Result<std::string> ConfigFolder::Target(const std::string& name) const {
    const auto file = FileOf(name);
    if (!platform::IsFileName(file)) {
        return platform::Error{platform::ErrorKind::Malformed, file, "no name of a file"};
    }
    return PathOf(Find(name).value_or(file));
}

platform::Result<std::vector<std::string>> ConfigFolder::List() const {
    auto files = platform::FindNamesEndingIn(path_, kEnding);
    if (files.empty()) {
        // The search is silent about a folder that can't be read.
        const auto listed = platform::Files().List(path_);
        if (!listed.ok()) return listed.error();
    }
    return files;
}

std::map<std::string, std::string> ConfigFolder::Spellings() const {
    std::map<std::string, std::string> spellings;
    for (auto& file : platform::FindFilesEndingIn(path_, kEnding)) {
        const auto name = NameOf(file);
        if (file.ends_with(kEnding)) {
            spellings.insert_or_assign(name, std::move(file));
        } else {
            spellings.try_emplace(name, std::move(file));
        }
    }
    return spellings;
}

}  // namespace velto
