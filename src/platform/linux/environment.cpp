#include "platform/environment.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>

namespace velto::platform {
namespace {

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

bool IsAbsolute(std::string_view path) {
    return path.starts_with('/');
}

// Absolute, of folders that may not exist yet. A ".." stays: behind a link it leads elsewhere than
// the text says.
std::string Absolute(const std::string& path) {
    std::error_code error;
    auto absolute = std::filesystem::absolute(path, error);
    if (error) return path;
    if (std::find(absolute.begin(), absolute.end(), "..") == absolute.end()) {
        absolute = absolute.lexically_normal();
    }
    auto text = absolute.string();
    while (text.size() > 1 && text.ends_with('/')) text.pop_back();
    return text;
}

std::string HomeFolder() {
    if (auto home = Variable("HOME"); IsAbsolute(home)) return home;
    const passwd* user = getpwuid(getuid());
    return user == nullptr ? "/" : user->pw_dir;
}

std::string DataFolder() {
    if (const auto home = Variable("VELTO_HOME"); !home.empty()) return Absolute(home);
    // Relative folders are to be ignored (XDG Base Directory Specification).
    if (const auto data = Variable("XDG_DATA_HOME"); IsAbsolute(data)) {
        return Absolute(JoinPath(data, "velto"));
    }
    return Absolute(JoinPath(HomeFolder(), ".local/share/velto"));
}

// The first executable of that name on the PATH; empty if there is none.
std::string OnPath(const std::string& name) {
    const std::string path = Variable("PATH");
    if (path.empty()) return {};
    std::size_t begin = 0;
    while (begin <= path.size()) {
        const auto end = std::min(path.find(':', begin), path.size());
        const auto folder = end == begin ? std::string(".") : path.substr(begin, end - begin);
        const auto candidate = JoinPath(folder, name);
        std::error_code error;
        if (std::filesystem::is_regular_file(candidate, error) &&
            access(candidate.c_str(), X_OK) == 0) {
            return Absolute(candidate);
        }
        begin = end + 1;
    }
    return {};
}

std::string Program(const std::string& name) {
    if (name.find('/') != std::string::npos) return Absolute(name);
    const auto found = OnPath(name);
    return found.empty() ? name : found;
}

std::string OwnPath() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

}  // namespace

Environment ReadEnvironment(FileService& files) {
    Environment result;
    result.program = OwnPath();
    result.home = DataFolder();
    const auto drives = Variable("VELTO_DRIVES");
    result.drives = drives.empty() ? JoinPath(result.home, "drives") : Absolute(drives);
    const auto runner = Variable("VELTO_RUNNER");
    result.runner = runner.empty() ? OnPath("wine") : Program(runner);
    const auto editor = Variable("VELTO_REGEDIT");
    result.registry_editor =
        editor.empty() ? JoinPath(FolderOf(result.program), "velto-regedit") : Program(editor);
    const auto current = Absolute(".");
    const auto config = files.Info(JoinPath(current, "config"));
    result.start_folder = config.ok() && config.value().folder ? current : result.home;

    result.child_variables = {{"VELTO_HOME", result.home}};
    if (!drives.empty()) result.child_variables.emplace_back("VELTO_DRIVES", result.drives);
    if (!runner.empty()) result.child_variables.emplace_back("VELTO_RUNNER", result.runner);
    if (!editor.empty()) {
        result.child_variables.emplace_back("VELTO_REGEDIT", result.registry_editor);
    }
    return result;
}

}  // namespace velto::platform
