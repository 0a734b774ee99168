#include "platform/linux/child.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <memory>
#include <utility>

#include "platform/linux/system_error.h"

// BecomeProgram and what it calls run in the child, which shares the memory of a process whose
// other threads may hold any lock: only async-signal-safe calls, and no object of the heap changes
// its size.
namespace velto::platform {
namespace {

constexpr int kExitFailedChild = 127;

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (auto& text : texts) result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

// Leaves descriptors 0 to 2, behind them those handed over, and behind these the report pipe, which
// becomes `report`.
bool ArrangeDescriptors(std::vector<int>& handed_over, int& report) {
    constexpr int kFirst = STDERR_FILENO + 1;
    const int place = kFirst + static_cast<int>(handed_over.size());
    // First out of the way of each other's places.
    for (int& number : handed_over) {
        number = fcntl(number, F_DUPFD_CLOEXEC, place + 1);
        if (number < 0) return false;
    }
    if (report < place) {
        const int moved = fcntl(report, F_DUPFD_CLOEXEC, place);
        if (moved < 0) return false;
        report = moved;
    }
    for (std::size_t i = 0; i < handed_over.size(); ++i) {
        if (dup2(handed_over[i], kFirst + static_cast<int>(i)) < 0) return false;
    }
    if (report != place && dup3(report, place, O_CLOEXEC) < 0) return false;
    report = place;
    const int empty = open("/dev/null", O_RDONLY);
    if (empty < 0 || dup2(empty, STDIN_FILENO) < 0) return false;
    if (empty != STDIN_FILENO) close(empty);
    return close_range(static_cast<unsigned>(place) + 1, ~0U, 0) == 0;
}

bool ResetSignals() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    // Fails for those that can't be changed, which have the default already.
    for (int number = 1; number < _NSIG; ++number) sigaction(number, &action, nullptr);
    sigset_t none{};
    sigemptyset(&none);
    return sigprocmask(SIG_SETMASK, &none, nullptr) == 0;
}

// A parent that ended before that call sends no signal any more.
bool TieToParent(pid_t parent) {
    return prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && getppid() == parent;
}

// `report` is the write end of a pipe, closed on exec. A ChildFailure goes there if this returns.
void BecomeProgram(ChildPlan& plan, int report) {
    ChildFailure failure;
    // In a session of its own, so that what ends this program at its terminal doesn't end a game.
    if (ArrangeDescriptors(plan.descriptors, report) && setsid() >= 0 &&
        (!plan.ends_with_parent || TieToParent(plan.parent)) && ResetSignals()) {
        failure.step = ChildFailure::Step::Folder;
        if (plan.folder.empty() || chdir(plan.folder.c_str()) == 0) {
            failure.step = ChildFailure::Step::Program;
            execve(plan.arguments.front().c_str(), plan.argument_pointers.data(),
                   plan.environment_pointers.data());
        }
    }
    failure.error = errno;
    static_cast<void>(Retrying([&] { return write(report, &failure, sizeof failure); }));
}

// Keeps this process's signal handlers from running in the child.
class SignalsBlocked {
  public:
    SignalsBlocked() {
        sigset_t all{};
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &previous_);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

  private:
    sigset_t previous_{};
};

}  // namespace

ChildPlan::ChildPlan(std::vector<std::string> command, std::vector<std::string> variables)
    : arguments(std::move(command)),
      environment(std::move(variables)),
      argument_pointers(Pointers(arguments)),
      environment_pointers(Pointers(environment)),
      parent(getpid()) {}

// In memory of its own the child would have to copy this process's page tables first, which takes a
// large process longer than all the rest. This thread stands still until the child is done with it.
pid_t StartChild(ChildPlan& plan, int report) {
    constexpr std::size_t kStackSize = std::size_t{64} << 10;
    const auto stack = std::make_unique<std::byte[]>(kStackSize);
    struct Child {
        ChildPlan& plan;
        int report;
    } child{plan, report};
    const auto run = [](void* given) {
        const auto& own = *static_cast<Child*>(given);
        BecomeProgram(own.plan, own.report);
        return kExitFailedChild;
    };
    const SignalsBlocked blocked;
    return clone(run, stack.get() + kStackSize, CLONE_VM | CLONE_VFORK | SIGCHLD, &child);
}

// By number: the C library's own header for it isn't made for C++.
Descriptor EndOf(pid_t child) {
    return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
}

}  // namespace velto::platform
