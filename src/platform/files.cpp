#include "platform/files.h"

namespace velto::platform {
namespace {

constexpr std::size_t kChunk = std::size_t{64} << 10;

}  // namespace

Result<std::string> ReadWhole(FileService& files, const std::string& path, std::size_t limit) {
    auto reader = files.Open(path);
    if (!reader.ok()) return reader.error();
    std::string bytes;
    while (true) {
        auto more = reader.value()->Read(bytes, kChunk);
        if (!more.ok()) return more.error();
        if (!more.value()) return bytes;
        if (bytes.size() > limit) {
            return Error{ErrorKind::TooLarge, path,
                         "larger than " + std::to_string(limit) + " bytes"};
        }
    }
}

std::string FolderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::string JoinPath(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (!path.empty() && path.back() != '/') path += '/';
    return path.append(name);
}

}  // namespace velto::platform
