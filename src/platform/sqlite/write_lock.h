// The lock by which the writers of one file take turns, whichever process they belong to.
#pragma once

#include <string>

#include "platform/linux/descriptor.h"
#include "platform/result.h"

namespace velto::platform {

// Waits until nobody else holds the lock of `file`, which is the file of that name with ".lock"
// behind it; it is made if need be and never removed, since others may be waiting on it. The
// lock is held until the result is closed, and ends with the process in any case. A second lock of
// the same thread would wait for ever.
Result<Descriptor> TakeWriteLock(const std::string& file);

}  // namespace velto::platform
