// Calls of the system that fail: one that a signal has interrupted is made again, of any other one
// the system's word becomes an Error. For the Linux forms of the services alone.
#pragma once

#include <cerrno>
#include <string>

#include "platform/result.h"

namespace velto::platform {

// Repeats a call that a signal has interrupted; errno is that of the last one.
template <class Call>
auto Retrying(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

// The kind and text of an errno value.
Error SystemError(std::string subject, int number = errno);

}  // namespace velto::platform
