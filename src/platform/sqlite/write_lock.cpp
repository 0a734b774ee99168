#include "platform/sqlite/write_lock.h"

#include <fcntl.h>
#include <sys/file.h>

#include "platform/linux/retrying.h"
#include "platform/linux/system_error.h"

namespace velto::platform {

Result<Descriptor> TakeWriteLock(const std::string& file) {
    constexpr mode_t kMode = 0666;  // less the umask
    const std::string name = file + ".lock";
    // Read-only, for a lock file that another user made: a lock takes no right to write.
    Descriptor lock(
        Retrying([&] { return open(name.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC, kMode); }));
    if (!lock.valid()) return SystemError(file);
    if (Retrying([&] { return flock(lock.get(), LOCK_EX); }) != 0) return SystemError(file);
    return lock;
}

}  // namespace velto::platform
