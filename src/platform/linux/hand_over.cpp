#include "platform/linux/hand_over.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/linux/descriptor.h"
#include "platform/linux/system_error.h"

namespace velto::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kMessageTime{2};  // from a client's connection to its last byte
constexpr std::chrono::milliseconds kPauseAfterFailure{100};
constexpr int kBacklog = 16;
constexpr std::size_t kLengthBytes = 4;
constexpr char kAnswer = 1;  // any byte would do

sockaddr_un AddressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), std::begin(address.sun_path));
    return address;
}

const sockaddr* Generic(const sockaddr_un& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

// Whether the process at the other end runs for this process's user.
bool IsOurs(const Descriptor& socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
           peer.uid == geteuid();
}

std::string MessageOf(const std::string& name) {
    std::string message;
    for (std::size_t i = 0; i < kLengthBytes; ++i) {
        message += static_cast<char>(name.size() >> (8 * i) & 0xFFU);
    }
    return message + name;
}

std::uint32_t LengthIn(const std::string& bytes) {
    std::uint32_t length = 0;
    for (std::size_t i = 0; i < kLengthBytes; ++i) {
        length |= std::uint32_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    }
    return length;
}

bool SendAll(const Descriptor& socket, std::string_view bytes) {
    while (!bytes.empty()) {
        // Not a signal but an error if the other end is gone.
        const auto count =
            Retrying([&] { return send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL); });
        if (count < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

// What is left, as poll() wants it: milliseconds, negative for no end.
int TimeoutUntil(Clock::time_point deadline) {
    if (deadline == Clock::time_point::max()) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    return static_cast<int>(std::max(left, std::chrono::milliseconds::zero()).count());
}

Error Refusal(std::string reason) {
    return {ErrorKind::Malformed, "hand-over", std::move(reason)};
}

class LinuxListener : public HandOverListener {
  public:
    LinuxListener(std::string path, Descriptor socket, Descriptor stop,
                  std::function<void(const std::string& name)> handle)
        : path_(std::move(path)),
          socket_(std::move(socket)),
          stop_(std::move(stop)),
          handle_(std::move(handle)),
          thread_([this] { Run(); }) {}

    ~LinuxListener() override {
        // Can't fail: the counter is at 0.
        static_cast<void>(eventfd_write(stop_.get(), 1));
        thread_.join();
        unlink(path_.c_str());
    }
    LinuxListener(const LinuxListener&) = delete;
    LinuxListener& operator=(const LinuxListener&) = delete;

  private:
    void Run() {
        while (Await(socket_.get(), Clock::time_point::max()).ok()) {
            const Descriptor client(
                accept4(socket_.get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
            if (client.valid()) {
                Serve(client);
            } else if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED) {
                // No descriptor or memory is free, and the client still waits: not in a busy loop.
                static_cast<void>(Await(-1, Clock::now() + kPauseAfterFailure));
            }
        }
    }

    void Serve(const Descriptor& client) {
        const auto name = TakeName(client);
        if (!name.ok()) {
            std::fprintf(stderr, "velto: hand-over refused: %s\n", name.error().text.c_str());
            return;
        }
        handle_(name.value());
        // A client that is gone misses its answer, and nobody else does.
        static_cast<void>(SendAll(client, {&kAnswer, 1}));
    }

    Result<std::string> TakeName(const Descriptor& client) const {
        if (!IsOurs(client)) return Refusal("it came from another user");
        const auto deadline = Clock::now() + kMessageTime;
        const auto head = Receive(client, kLengthBytes, deadline);
        if (!head.ok()) return head.error();
        const auto length = LengthIn(head.value());
        if (length > kLongestName) return Refusal("the name is too long");
        return Receive(client, length, deadline);
    }

    Result<std::string> Receive(const Descriptor& client, std::size_t size,
                                Clock::time_point deadline) const {
        std::string bytes(size, '\0');
        for (std::size_t have = 0; have < size;) {
            if (auto ready = Await(client.get(), deadline); !ready.ok()) return ready.error();
            const auto count = recv(client.get(), bytes.data() + have, size - have, 0);
            if (count < 0 && (errno == EAGAIN || errno == EINTR)) continue;
            if (count < 0) return SystemError("hand-over");
            if (count == 0) return Refusal("the message was cut short");
            have += static_cast<std::size_t>(count);
        }
        return bytes;
    }

    // Success when there is something to read. The end of the listener and the deadline are
    // failures.
    Status Await(int descriptor, Clock::time_point deadline) const {
        std::array<pollfd, 2> polled{pollfd{descriptor, POLLIN, 0}, pollfd{stop_.get(), POLLIN, 0}};
        const auto count =
            Retrying([&] { return poll(polled.data(), polled.size(), TimeoutUntil(deadline)); });
        if (count < 0) return SystemError("hand-over");
        if (count == 0) return Refusal("the message didn't come in time");
        if (polled[1].revents != 0) return Refusal("the program ends");
        return {};
    }

    std::string path_;
    Descriptor socket_;
    Descriptor stop_;
    std::function<void(const std::string& name)> handle_;
    std::thread thread_;  // the last, as it uses all the others
};

}  // namespace

HandOverResult SendHandOver(const std::string& socket_path, const std::string& name) {
    const auto address = AddressOf(socket_path);
    const Descriptor server(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!server.valid()) return HandOverResult::Refused;
    if (Retrying([&] { return connect(server.get(), Generic(address), sizeof address); }) != 0) {
        const bool nobody = errno == ENOENT || errno == ECONNREFUSED;
        return nobody ? HandOverResult::NoneThere : HandOverResult::Refused;
    }
    if (name.size() > kLongestName) return HandOverResult::Refused;
    if (!IsOurs(server) || !SendAll(server, MessageOf(name))) return HandOverResult::Refused;
    char answer = 0;
    const auto count = Retrying([&] { return recv(server.get(), &answer, 1, 0); });
    return count == 1 ? HandOverResult::Answered : HandOverResult::Refused;
}

Result<std::unique_ptr<HandOverListener>> ListenForHandOvers(
    const std::string& socket_path, std::function<void(const std::string& name)> handle) {
    // Whoever listens holds the lock, so what stands there is of a process that is gone.
    if (unlink(socket_path.c_str()) != 0 && errno != ENOENT) return SystemError(socket_path);
    // A client may leave between the poll and the accept, which must not wait for the next one.
    Descriptor server(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    Descriptor stop(eventfd(0, EFD_CLOEXEC));
    if (!server.valid() || !stop.valid()) return SystemError(socket_path);
    const auto address = AddressOf(socket_path);
    if (bind(server.get(), Generic(address), sizeof address) != 0 ||
        listen(server.get(), kBacklog) != 0) {
        return SystemError(socket_path);
    }
    try {
        return std::unique_ptr<HandOverListener>(std::make_unique<LinuxListener>(
            socket_path, std::move(server), std::move(stop), std::move(handle)));
    } catch (const std::system_error& failure) {  // no thread
        return SystemError(socket_path, failure.code().value());
    }
}

}  // namespace velto::platform
