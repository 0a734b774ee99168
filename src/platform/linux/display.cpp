#include "platform/display.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "platform/files.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/system_error.h"

namespace velto::platform {
namespace {

constexpr int kRemoteWaitMs = 2000;
constexpr int kX11Port = 6000;  // of display 0, X Window System Protocol, appendix B

std::string Variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

bool Connects(const Descriptor& socket, const sockaddr& address, socklen_t length) {
    if (!socket.valid()) return false;
    if (connect(socket.get(), &address, length) == 0) return true;
    if (errno != EINPROGRESS) return false;
    pollfd connected{socket.get(), POLLOUT, 0};
    if (Retrying([&] { return poll(&connected, 1, kRemoteWaitMs); }) != 1) return false;
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(socket.get(), SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
}

Descriptor MakeSocket(int family) {
    return Descriptor(socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

// A name that begins with NUL is one of the abstract names.
bool AcceptsLocally(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) return false;
    std::memcpy(address.sun_path, path.data(), path.size());
    const bool abstract = path.front() == '\0';
    const auto length = offsetof(sockaddr_un, sun_path) + path.size() + (abstract ? 0 : 1);
    return Connects(MakeSocket(AF_UNIX), reinterpret_cast<const sockaddr&>(address),
                    static_cast<socklen_t>(length));
}

bool AcceptsRemotely(const std::string& host, int port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0) return false;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(found, freeaddrinfo);
    for (const auto* one = found; one != nullptr; one = one->ai_next) {
        if (Connects(MakeSocket(one->ai_family), *one->ai_addr, one->ai_addrlen)) return true;
    }
    return false;
}

bool HasWayland() {
    const auto name = Variable("WAYLAND_DISPLAY");
    if (name.empty()) return false;
    return AcceptsLocally(name.starts_with('/') ? name
                                                : JoinPath(Variable("XDG_RUNTIME_DIR"), name));
}

// `[host]:display[.screen]`
bool HasX11() {
    const auto name = Variable("DISPLAY");
    const auto colon = name.rfind(':');
    if (colon == std::string::npos) return false;
    const auto host = name.substr(0, colon);
    char* end = nullptr;
    constexpr int kDecimal = 10;
    constexpr auto kHighest = 65535 - kX11Port;
    const auto display = std::strtol(name.c_str() + colon + 1, &end, kDecimal);
    if (end == name.c_str() + colon + 1 || display < 0 || display > kHighest) return false;
    if (host.empty() || host == "unix") {
        const auto path = "/tmp/.X11-unix/X" + std::to_string(display);
        return AcceptsLocally(path) || AcceptsLocally('\0' + path);
    }
    return AcceptsRemotely(host, kX11Port + static_cast<int>(display));
}

}  // namespace

bool HasDisplay() {
    return !Variable("QT_QPA_PLATFORM").empty() || HasWayland() || HasX11();
}

}  // namespace velto::platform
