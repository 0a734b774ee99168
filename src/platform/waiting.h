// Waiting: how the logic tells the user that something takes a while.
//
// Whoever waits begins a Wait, tells it every few milliseconds that it goes on, and destroys it at
// the end. On the user interface thread a small window then shows, after a moment, what is waited
// for; on any other thread, and where there are no windows, nothing happens.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace velto::platform {

struct WaitRequest {
    std::string what;       // plain text: what is waited for
    bool can_stop = false;  // the user is offered to stop it
    std::chrono::milliseconds shown_after{300};
};

struct WaitProgress {
    std::size_t done = 0;
    std::size_t total = 0;
};

// Belongs to the thread that began it.
class Wait {
  public:
    virtual ~Wait() = default;
    // It goes on; how far it is, if that is known. While the window is shown events are handled,
    // none of which reaches the windows below. False: since the last call the user has asked to
    // stop.
    virtual bool Continue(std::optional<WaitProgress> progress = {}) = 0;
};

class WaitingService {
  public:
    virtual ~WaitingService() = default;
    // From any thread. Never null.
    virtual std::unique_ptr<Wait> Begin(const WaitRequest& request) = 0;
};

WaitingService& Waiting();

// For a process without windows: nothing is shown, and nobody stops anything.
std::unique_ptr<WaitingService> MakeSilentWaiting();

}  // namespace velto::platform
