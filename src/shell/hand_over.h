// Names of configurations that a second process hands over, on their way from the listener's thread
// to the user interface thread.
//
// The second process waits until the name has been handled, or the editor closes.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/instance.h"

namespace velto {

// The editor is gone: the next process may be the first one, while this one still has something to
// finish.
void LeaveToNextProcess();

class HandOver {
  public:
    // `arrived` is called on the listener's thread when a name can be taken. A listener that can't
    // be had leaves second processes unanswered.
    explicit HandOver(std::function<void()> arrived);
    // Lets a second process that waits go.
    ~HandOver();
    HandOver(const HandOver&) = delete;
    HandOver& operator=(const HandOver&) = delete;

    // The name that waits, once.
    std::optional<std::string> Take();
    // The name taken has been handled.
    void Done();

  private:
    void Wait(const std::string& name);

    std::function<void()> arrived_;
    std::mutex mutex_;
    std::condition_variable handled_;
    std::optional<std::string> name_;
    bool waiting_ = false;
    bool closed_ = false;
    std::unique_ptr<platform::HandOverListener> listener_;
};

}  // namespace velto
