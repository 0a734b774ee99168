#include "platform/instance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <utility>

#include "platform/files.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/hand_over.h"
#include "platform/linux/system_error.h"

namespace velto::platform {
namespace {

// 64-bit FNV-1a (draft-eastlake-fnv) in hexadecimal digits.
std::string HashOf(std::string_view bytes) {
    std::uint64_t hash = 0xCBF29CE484222325U;
    for (const char byte : bytes) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= 0x100000001B3U;
    }
    constexpr int kBase = 16;
    std::array<char, 2 * sizeof hash> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), hash, kBase).ptr;
    return {digits.begin(), end};
}

// Without links, "." and "..", as far as the path exists; what lies behind without "." and "..".
std::string RealPathOf(const std::string& path) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(path, error);
    auto real = std::filesystem::weakly_canonical(absolute, error);
    if (error) real = absolute.lexically_normal();
    return (real.has_filename() ? real : real.parent_path()).string();
}

std::string IdOf(const std::string& program, const std::string& home) {
    return HashOf(NameOf(program) + '\0' + RealPathOf(home));
}

// The user's runtime folder, which the login has made (XDG Base Directory Specification); empty
// if there is none. One of another user, kept by a change of users, doesn't count.
std::string RuntimeFolder() {
    const char* value = std::getenv("XDG_RUNTIME_DIR");
    const std::string folder = value == nullptr ? "" : value;
    struct stat status {};
    const bool usable = folder.starts_with('/') && stat(folder.c_str(), &status) == 0 &&
                        S_ISDIR(status.st_mode) && status.st_uid == geteuid();
    return usable ? folder : "";
}

// The folder of the lock files and sockets; names of `longest_name` bytes must fit an address.
std::string InstanceFolder(std::size_t longest_name) {
    if (const auto runtime = RuntimeFolder(); !runtime.empty()) {
        auto folder = JoinPath(runtime, "velto");
        if (folder.size() + 1 + longest_name < kSocketPathLimit) return folder;
    }
    return "/tmp/velto-" + std::to_string(geteuid());
}

// Makes the folder if it is missing. One that others could enter, or that isn't this user's, is
// Unsuitable: a stranger could have put it there.
Result<Descriptor> OpenPrivateFolder(const std::string& folder) {
    if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) return SystemError(folder);
    constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    Descriptor opened(Retrying([&] { return open(folder.c_str(), kFlags); }));
    if (!opened.valid() && (errno == ENOTDIR || errno == ELOOP)) {
        return Error{ErrorKind::Unsuitable, folder, "It is a link or no folder"};
    }
    struct stat status {};
    if (!opened.valid() || fstat(opened.get(), &status) != 0) return SystemError(folder);
    if (status.st_uid != geteuid()) {
        return Error{ErrorKind::Unsuitable, folder, "It belongs to another user"};
    }
    if ((status.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
        return Error{ErrorKind::Unsuitable, folder, "Other users have access to it"};
    }
    return opened;
}

class LinuxInstance : public InstanceService {
  public:
    explicit LinuxInstance(const std::string& id)
        : lock_name_(id + ".lock"),
          socket_name_(id + ".socket"),
          folder_(InstanceFolder(socket_name_.size())) {}

    Result<bool> Acquire() override {
        if (lock_.valid()) return true;
        const auto folder = OpenPrivateFolder(folder_);
        if (!folder.ok()) return folder.error();
        constexpr int kFlags = O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC;
        Descriptor file(Retrying([&] {
            return openat(folder.value().get(), lock_name_.c_str(), kFlags, S_IRUSR | S_IWUSR);
        }));
        if (!file.valid()) return SystemError(JoinPath(folder_, lock_name_));
        if (Retrying([&] { return flock(file.get(), LOCK_EX | LOCK_NB); }) != 0) {
            if (errno == EWOULDBLOCK) return false;
            return SystemError(JoinPath(folder_, lock_name_));
        }
        // The file is never removed: it could be locked by one process, and made anew and locked
        // by the next. The sticky bit tells those who tidy up runtime folders the same (XDG Base
        // Directory Specification); without it the lock holds all the same.
        static_cast<void>(fchmod(file.get(), S_IRUSR | S_IWUSR | S_ISVTX));
        lock_ = std::move(file);
        return true;
    }

    void Release() override { lock_.Reset(); }

    HandOverResult HandOver(const std::string& name) override {
        return SendHandOver(JoinPath(folder_, socket_name_), name);
    }

    Result<std::unique_ptr<HandOverListener>> Listen(
        std::function<void(const std::string& name)> handle) override {
        const auto path = JoinPath(folder_, socket_name_);
        if (!lock_.valid()) {
            return Error{ErrorKind::Denied, path, "This process isn't the first"};
        }
        return ListenForHandOvers(path, std::move(handle));
    }

  private:
    std::string lock_name_;
    std::string socket_name_;
    std::string folder_;
    Descriptor lock_;  // valid: this process is the first
};

}  // namespace

std::unique_ptr<InstanceService> MakeInstanceService(const std::string& program,
                                                     const std::string& home) {
    return std::make_unique<LinuxInstance>(IdOf(program, home));
}

}  // namespace velto::platform
