#include "platform/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "platform/linux/descriptor.h"
#include "platform/linux/system_error.h"

namespace velto::platform {

FileLock::FileLock(Descriptor file) : file_(std::make_unique<Descriptor>(std::move(file))) {}
FileLock::FileLock(FileLock&& other) noexcept = default;
FileLock& FileLock::operator=(FileLock&& other) noexcept = default;
FileLock::~FileLock() = default;

int FileLock::descriptor() const {
    return file_->get();
}

Result<FileLock> FileLock::Take(const std::string& path) {
    // A pipe of that name must not block.
    constexpr int kFlags = O_RDONLY | O_NONBLOCK | O_CLOEXEC;
    Descriptor file(Retrying([&] { return open(path.c_str(), kFlags); }));
    if (!file.valid()) return SystemError(path);
    if (Retrying([&] { return flock(file.get(), LOCK_EX | LOCK_NB); }) == 0) {
        return FileLock(std::move(file));
    }
    const int reason = errno;
    auto error = SystemError(path, reason);
    if (reason == EWOULDBLOCK) error.kind = ErrorKind::AlreadyExists;
    return error;
}

bool FileLock::IsOn(const std::string& path) const {
    struct stat locked {};
    struct stat named {};
    return fstat(file_->get(), &locked) == 0 && stat(path.c_str(), &named) == 0 &&
           locked.st_dev == named.st_dev && locked.st_ino == named.st_ino;
}

}  // namespace velto::platform
