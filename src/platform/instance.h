// One running program for each executable name and data folder, and the way in which a second
// one hands a configuration's name to the first.
//
// A lock file and a local socket stand in a folder that only this user can enter: `velto` in the
// user's own XDG_RUNTIME_DIR, else /tmp/velto-<uid>. The lock dies with its process, whatever ends
// it. Message, our own protocol: 4 bytes little-endian length of the name (0 to kLongestName), the
// name's bytes; what follows isn't read. It must come whole within two seconds. Answer: one byte,
// sent when the first process has handled the name.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/result.h"

namespace velto::platform {

inline constexpr std::uint32_t kLongestName = 4096;

enum class HandOverResult {
    Answered,   // the first process has handled the name
    NoneThere,  // nobody listens
    Refused,    // the name is too long, the listener another user's, or no answer came
};

// Listens until it is destroyed; its destructor waits for a handler that is running.
class HandOverListener {
  public:
    virtual ~HandOverListener() = default;
};

class InstanceService {
  public:
    virtual ~InstanceService() = default;

    // True if this process is the first. The lock is then held until Release or the service's end.
    // A folder that is a link, another user's or open to others is a failure.
    virtual Result<bool> Acquire() = 0;
    // The next process may be the first. No listener may be left.
    virtual void Release() = 0;

    // Blocks until the first process has handled the name.
    virtual HandOverResult HandOver(const std::string& name) = 0;

    // `handle` runs on a thread of the listener, one name at a time; the answer goes out when it
    // returns. Malformed messages and other users are refused with a line on standard error, and
    // `handle` isn't called. Only for the process that holds the lock; one listener at a time,
    // which must not outlive the service.
    virtual Result<std::unique_ptr<HandOverListener>> Listen(
        std::function<void(const std::string& name)> handle) = 0;
};

InstanceService& Instance();

// `program` is the executable's path, of which the base name counts; `home` the data folder, by
// its real path as far as it exists.
std::unique_ptr<InstanceService> MakeInstanceService(const std::string& program,
                                                     const std::string& home);

}  // namespace velto::platform
