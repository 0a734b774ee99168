// The two ends of the hand-over between processes of one user: a local stream socket.
// For the Linux form of the instance service alone. instance.h tells the messages.
//
// A socket's path must be shorter than kSocketPathLimit bytes.
#pragma once

#include <sys/un.h>

#include <functional>
#include <memory>
#include <string>

#include "platform/instance.h"

namespace velto::platform {

inline constexpr std::size_t kSocketPathLimit = sizeof(sockaddr_un::sun_path);

// Waits for the answer without limit.
HandOverResult SendHandOver(const std::string& socket_path, const std::string& name);

// Replaces a socket that a dead process has left. The listener removes its own.
Result<std::unique_ptr<HandOverListener>> ListenForHandOvers(
    const std::string& socket_path, std::function<void(const std::string& name)> handle);

}  // namespace velto::platform
