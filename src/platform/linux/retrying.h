// Calls of the host that a signal may interrupt. For the Linux forms of the services alone.
#pragma once

#include <cerrno>

namespace velto::platform {

// Repeats a call that a signal has interrupted; errno is that of the last one.
template <class Call>
auto Retrying(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

}  // namespace velto::platform
