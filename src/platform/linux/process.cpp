#include "platform/process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <mutex>
#include <string_view>
#include <utility>

#include "platform/ascii.h"
#include "platform/environment.h"
#include "platform/linux/child.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/system_error.h"

namespace velto::platform {
namespace {

// Children that nobody has waited for. What is left of those that have ended is collected when
// the next child is started, so that a long-lived process doesn't gather zombies.
class Strays {
  public:
    void Add(pid_t child) {
        const std::lock_guard lock(mutex_);
        children_.push_back(child);
    }
    void Collect() {
        const std::lock_guard lock(mutex_);
        std::erase_if(children_, [](pid_t child) { return waitpid(child, nullptr, WNOHANG) != 0; });
    }

  private:
    std::mutex mutex_;
    std::vector<pid_t> children_;
};

Result<ExitStatus> WaitFor(pid_t child, const std::string& program) {
    int status = 0;
    if (Retrying([&] { return waitpid(child, &status, 0); }) < 0) return SystemError(program);
    if (WIFEXITED(status)) return ExitStatus{true, WEXITSTATUS(status)};
    return ExitStatus{false, WTERMSIG(status)};
}

// Without collecting what is left of the child.
bool HasEnded(pid_t child) {
    siginfo_t info{};
    const auto asked = waitid(P_PID, static_cast<id_t>(child), &info, WEXITED | WNOHANG | WNOWAIT);
    return asked != 0 || info.si_pid == child;
}

class LinuxChild : public ChildProcess {
  public:
    LinuxChild(pid_t child, std::string program, std::shared_ptr<Strays> strays)
        : child_(child), program_(std::move(program)), strays_(std::move(strays)) {}
    ~LinuxChild() override {
        if (!waited_) strays_->Add(child_);
    }
    LinuxChild(const LinuxChild&) = delete;
    LinuxChild& operator=(const LinuxChild&) = delete;

    int id() const override { return child_; }

    bool EndsWithin(std::chrono::milliseconds limit) override {
        if (waited_ || HasEnded(child_)) return true;
        const auto end = EndOf(child_);
        pollfd polled{end.get(), POLLIN, 0};
        poll(&polled, 1, static_cast<int>(limit.count()));
        return HasEnded(child_);
    }

    Result<ExitStatus> Wait() override {
        if (std::exchange(waited_, true)) {
            return Error{ErrorKind::Other, program_, "The program has been waited for"};
        }
        return WaitFor(child_, program_);
    }

    void Kill() override {
        // Can't fail: a child that has ended keeps its number until it is waited for.
        if (!waited_) kill(child_, SIGKILL);
    }

  private:
    pid_t child_;
    std::string program_;
    std::shared_ptr<Strays> strays_;
    bool waited_ = false;
};

Status CheckProgram(const std::string& path) {
    // A bare name is one that isn't on the PATH.
    if (path.find('/') == std::string::npos) return SystemError(path, ENOENT);
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return SystemError(path);
    if (S_ISDIR(status.st_mode)) return SystemError(path, EISDIR);
    if (!S_ISREG(status.st_mode)) {
        return Error{ErrorKind::Unsuitable, path, "Not a regular file"};
    }
    return {};
}

// Whether the existing file `path` is named `*.exe` and begins with the mark of such programs.
bool NeedsRunner(const std::string& path) {
    constexpr std::string_view kSuffix = ".exe";
    constexpr std::string_view kMark = "MZ";
    const auto stem = path.size() - std::min(path.size(), kSuffix.size());
    if (!EqualsIgnoringCase(std::string_view{path}.substr(stem), kSuffix)) return false;
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.valid()) return false;  // the attempt to run it tells why
    std::array<char, kMark.size()> start{};
    return read(file.get(), start.data(), start.size()) == std::ssize(kMark) &&
           std::string_view(start.data(), start.size()) == kMark;
}

Error ToError(const ChildFailure& failure, const ChildPlan& plan) {
    if (failure.step == ChildFailure::Step::Folder) return SystemError(plan.folder, failure.error);
    const auto& program = plan.arguments.front();
    if (failure.step == ChildFailure::Step::Program && failure.error == ENOENT) {
        return {ErrorKind::NotFound, program, "The file or its interpreter isn't there"};
    }
    return SystemError(program, failure.error);
}

class LinuxProcesses : public ProcessService {
  public:
    explicit LinuxProcesses(const Environment& environment) : environment_(environment) {
        // Whoever started this program may have it ignore the end of its children; then no exit
        // status would be left to wait for.
        std::signal(SIGCHLD, SIG_DFL);
    }

    Result<std::unique_ptr<ChildProcess>> Start(const ProcessRequest& request) override {
        strays_->Collect();
        auto command = CommandOf(request);
        if (!command.ok()) return command.error();
        ChildPlan plan(std::move(command).value(), ChildEnvironment(request));
        plan.folder = request.folder;
        plan.ends_with_parent = request.ends_with_parent;
        plan.descriptors = request.descriptors;
        return Start(plan);
    }

  private:
    // The program and its arguments.
    Result<std::vector<std::string>> CommandOf(const ProcessRequest& request) const {
        for (const auto* text : {&request.file, &request.parameters, &request.folder}) {
            if (text->find('\0') != std::string::npos) {
                return Error{ErrorKind::Malformed, request.file, "A text holds a NUL"};
            }
        }
        if (auto there = CheckProgram(request.file); !there.ok()) return there.error();
        std::vector<std::string> command;
        // The child changes its folder before it looks for the file.
        std::error_code error;
        command.push_back(std::filesystem::absolute(request.file, error).string());
        if (error) return SystemError(request.file, error.value());
        if (NeedsRunner(request.file)) {
            const auto& runner = environment_.runner;
            if (runner.empty()) {
                return Error{ErrorKind::Unsuitable, request.file,
                             "It needs a runner, and VELTO_RUNNER names none"};
            }
            if (auto there = CheckProgram(runner); !there.ok()) return there.error();
            command.insert(command.begin(), runner);
        }
        for (auto& argument : SplitParameters(request.parameters)) {
            command.push_back(std::move(argument));
        }
        return command;
    }

    std::vector<std::string> ChildEnvironment(const ProcessRequest& request) const {
        auto own = environment_.child_variables;
        own.insert(own.end(), request.variables.begin(), request.variables.end());
        std::vector<std::string> result;
        for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
            const std::string_view text(*entry);
            const auto name = text.substr(0, text.find('='));
            const bool replaced = std::any_of(own.begin(), own.end(), [&](const auto& variable) {
                return variable.first == name;
            });
            if (!replaced && name != kMergeScope) result.emplace_back(text);
        }
        for (const auto& [name, value] : own) {
            result.push_back(std::string(name).append("=").append(value));
        }
        return result;
    }

    Result<std::unique_ptr<ChildProcess>> Start(ChildPlan& plan) const {
        const auto& program = plan.arguments.front();
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0) return SystemError(program);
        const Descriptor report(ends[0]);
        Descriptor childs_end(ends[1]);

        const pid_t child = StartChild(plan, childs_end.get());
        if (child < 0) return SystemError(program);
        childs_end.Reset();

        // The pipe closes without a word when the child becomes the program.
        ChildFailure failure{};
        const auto told = Retrying([&] { return read(report.get(), &failure, sizeof failure); });
        if (told == 0) {
            return std::unique_ptr<ChildProcess>(
                std::make_unique<LinuxChild>(child, program, strays_));
        }
        if (told < 0) return SystemError(program);
        if (auto ended = WaitFor(child, program); !ended.ok()) return ended.error();
        return ToError(failure, plan);
    }

    const Environment& environment_;
    std::shared_ptr<Strays> strays_ = std::make_shared<Strays>();
};

}  // namespace

std::unique_ptr<ProcessService> MakeProcessService(const Environment& environment) {
    return std::make_unique<LinuxProcesses>(environment);
}

}  // namespace velto::platform
