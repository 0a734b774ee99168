#include "platform/linux/library_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <tuple>
#include <utility>

#include "platform/linux/child.h"
#include "platform/linux/system_error.h"

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

struct Pipe {
    Descriptor out;
    Descriptor in;
    bool Open() {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC | O_DIRECT) != 0) return false;
        out = Descriptor(ends[0]);
        in = Descriptor(ends[1]);
        return true;
    }
};

}  // namespace

Result<std::unique_ptr<LibraryProcess>> LibraryProcess::Start(
    ProcessService& processes, const std::string& program, const std::string& folder,
    std::chrono::milliseconds answer_time) {
    Pipe requests;
    Pipe answers;
    if (!requests.Open() || !answers.Open()) return SystemError(program);
    ProcessRequest request;
    request.file = program;
    request.folder = folder;
    request.ends_with_parent = true;
    request.descriptors = {requests.out.get(), answers.in.get()};
    auto child = processes.Start(request);
    if (!child.ok()) return child.error();
    return std::unique_ptr<LibraryProcess>(new LibraryProcess(
        std::move(child).value(), std::move(requests.in), std::move(answers.out), answer_time));
}

LibraryProcess::LibraryProcess(std::unique_ptr<ChildProcess> child, Descriptor requests,
                               Descriptor answers, std::chrono::milliseconds answer_time)
    : child_(std::move(child)),
      requests_(std::move(requests)),
      answers_(std::move(answers)),
      end_(EndOf(child_->id())),
      answer_time_(answer_time) {}

LibraryProcess::~LibraryProcess() {
    End();
}

void LibraryProcess::Send(const LibraryMessage& request) {
    if (!alive() || SendLibraryMessage(requests_.get(), request)) return;
    Kill();
    left_requests_ = true;
}

Result<LibraryMessage> LibraryProcess::Receive(bool endless) {
    if (!alive()) return Failure("The library's program has ended");
    if (!AwaitAnswer(endless)) return Failure("The library's program has ended or doesn't answer");
    auto answer = ReceiveLibraryMessage(answers_.get());
    if (!answer) return Failure("The library's program has ended or gives no proper answer");
    if (answer->kind == LibraryMessageKind::Done) return std::move(*answer);
    if (answer->kind != LibraryMessageKind::Failed || answer->texts.size() != 1) return Refuse();
    return Error{ErrorKind::Other, "library", answer->texts[0]};
}

Error LibraryProcess::Refuse() {
    return Failure("The library's program gives no proper answer");
}

void LibraryProcess::End() {
    if (!alive()) return;
    requests_.Reset();
    std::array<pollfd, 1> polled{pollfd{end_.get(), POLLIN, 0}};
    std::ignore = Await(polled, answer_time_);
    Kill();
}

bool LibraryProcess::AwaitAnswer(bool endless) const {
    // A child that a library has forked keeps the pipe open behind the program's own end.
    std::array<pollfd, 2> polled{pollfd{answers_.get(), POLLIN, 0}, pollfd{end_.get(), POLLIN, 0}};
    return Await(polled, endless ? std::nullopt : std::optional(answer_time_)) &&
           polled[0].revents != 0;
}

void LibraryProcess::Kill() {
    if (!alive()) return;
    child_->Kill();
    std::ignore = child_->Wait();
    child_.reset();
    // What is still in the pipe wasn't taken: the program has died of the request in front of it.
    int bytes = 0;
    left_requests_ =
        requests_.valid() && ioctl(requests_.get(), FIONREAD, &bytes) == 0 && bytes > 0;
    requests_.Reset();
    answers_.Reset();
    end_.Reset();
}

Error LibraryProcess::Failure(std::string text) {
    Kill();
    return {ErrorKind::Other, "library", std::move(text)};
}

}  // namespace velto::platform
