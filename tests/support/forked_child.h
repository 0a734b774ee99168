// A forked child process that tells its parent numbers. It must open what it uses by itself: no
// store and no thread of the parent works in it.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/linux/descriptor.h"

namespace velto::test {

class ForkedChild {
  public:
    using Tell = std::function<void(std::int64_t)>;
    // Its result is the exit status; an exception aborts the child.
    using Work = std::function<int(const Tell&)>;

    explicit ForkedChild(const Work& work) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
        told_ = platform::Descriptor(ends[0]);
        const platform::Descriptor childs_end(ends[1]);
        id_ = fork();
        if (id_ < 0) throw std::runtime_error("fork");
        if (id_ == 0) Run(work, childs_end.get());
    }
    // Kills it if it hasn't been waited for.
    ~ForkedChild() {
        if (id_ < 0) return;
        Kill();
        Wait();
    }
    ForkedChild(const ForkedChild&) = delete;
    ForkedChild& operator=(const ForkedChild&) = delete;

    void Kill() const { kill(id_, SIGKILL); }

    // The next number that it tells; nothing at its end.
    std::optional<std::int64_t> Next() {
        std::int64_t number = 0;
        if (read(told_.get(), &number, sizeof number) != sizeof number) return {};
        return number;
    }

    // How it ended, in waitpid's terms: 0 if its exit status was.
    int Wait() {
        int status = -1;
        waitpid(std::exchange(id_, -1), &status, 0);
        return status;
    }

  private:
    static void Run(const Work& work, int output) noexcept {
        _exit(work([output](std::int64_t number) {
            if (write(output, &number, sizeof number) != sizeof number) _exit(254);
        }));
    }

    pid_t id_ = -1;
    platform::Descriptor told_;
};

}  // namespace velto::test
