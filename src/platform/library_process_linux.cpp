#include "platform/library_process_linux.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <span>
#include <tuple>
#include <utility>

#include "platform/retrying.h"

namespace velto::platform {
namespace {

using Clock = std::chrono::steady_clock;

// Whether one of them has become ready in time.
bool Await(std::span<pollfd> polled, std::optional<std::chrono::milliseconds> time) {
    const auto deadline = Clock::now() + time.value_or(std::chrono::milliseconds::zero());
    const auto left = [&] {
        if (!time) return -1;
        const auto rest = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        return static_cast<int>(std::max(rest, std::chrono::milliseconds::zero()).count());
    };
    return Retrying([&] { return poll(polled.data(), polled.size(), left()); }) > 0;
}

// Becomes readable when the process ends. (The C library's own header for it isn't made for C++.)
Descriptor EndOf(int process) {
    return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
}

}  // namespace

Result<std::unique_ptr<LibraryProcess>> LibraryProcess::Start(
    ProcessService& processes, const std::string& program, const std::string& folder,
    std::chrono::milliseconds answer_time) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return SystemError(program);
    }
    Descriptor own(ends[0]);
    const Descriptor childs(ends[1]);
    auto child = processes.Start(
        {.file = program, .folder = folder, .ends_with_parent = true, .channel = childs.get()});
    if (!child.ok()) return child.error();
    return std::unique_ptr<LibraryProcess>(
        new LibraryProcess(std::move(child).value(), std::move(own), answer_time));
}

LibraryProcess::LibraryProcess(std::unique_ptr<ChildProcess> child, Descriptor channel,
                               std::chrono::milliseconds answer_time)
    : child_(std::move(child)),
      channel_(std::move(channel)),
      end_(EndOf(child_->id())),
      answer_time_(answer_time) {}

LibraryProcess::~LibraryProcess() {
    End();
}

Result<LibraryMessage> LibraryProcess::Ask(const LibraryMessage& request, Form form, bool endless) {
    if (!alive()) return Failure("The library's program has ended");
    if (!SendLibraryMessage(channel_.get(), request)) {
        return Failure("The library's program takes no requests");
    }
    if (!AwaitAnswer(endless))
        return Failure("The library has ended its program or doesn't answer");
    auto answer = ReceiveLibraryMessage(channel_.get());
    if (!answer) return Failure("The library has ended its program");
    const auto& [kind, numbers, texts] = *answer;
    if (kind == LibraryMessageKind::Failed && texts.size() == 1) {
        return Error{ErrorKind::Other, "library", texts[0]};
    }
    if (kind != LibraryMessageKind::Done || numbers.size() != form.numbers ||
        texts.size() != form.texts) {
        return Failure("The library's program gives no proper answer");
    }
    return std::move(*answer);
}

void LibraryProcess::End() {
    if (!alive()) return;
    shutdown(channel_.get(), SHUT_WR);
    std::array<pollfd, 1> polled{pollfd{end_.valid() ? end_.get() : channel_.get(), POLLIN, 0}};
    std::ignore = Await(polled, answer_time_);
    Kill();
}

bool LibraryProcess::AwaitAnswer(bool endless) const {
    // A child that a library has forked keeps the channel open behind the program's own end.
    std::array<pollfd, 2> polled{pollfd{channel_.get(), POLLIN, 0}, pollfd{end_.get(), POLLIN, 0}};
    return Await(polled, endless ? std::nullopt : std::optional(answer_time_)) &&
           polled[0].revents != 0;
}

void LibraryProcess::Kill() {
    if (!alive()) return;
    child_->Kill();
    std::ignore = child_->Wait();
    child_.reset();
    channel_.Reset();
    end_.Reset();
}

Error LibraryProcess::Failure(std::string text) {
    Kill();
    return {ErrorKind::Other, "library", std::move(text)};
}

}  // namespace velto::platform
