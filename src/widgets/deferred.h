// Calls that come later, from the event loop of the user interface thread.
#pragma once

#include <QMetaObject>
#include <QTimer>
#include <deque>
#include <functional>
#include <utility>

namespace velto {

// From any thread: `work` is done on the thread of `receiver`, and not any more when this has gone.
template <class Work>
void PostTo(QObject& receiver, Work work) {
    QMetaObject::invokeMethod(&receiver, std::move(work), Qt::QueuedConnection);
}

// From that thread: calls that wait until the present event has been handled, with all that Qt has
// posted to finish it. They come in their order, and not any more when this has gone.
class Deferred {
  public:
    Deferred() {
        timer_.setSingleShot(true);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { CallNext(); });
    }

    void Call(std::function<void()> action) {
        actions_.push_back(std::move(action));
        timer_.start(0);
    }

  private:
    // One at a time: it may run an event loop, or end the window that this belongs to.
    void CallNext() {
        const auto action = std::move(actions_.front());
        actions_.pop_front();
        if (!actions_.empty()) timer_.start(0);
        action();
    }

    std::deque<std::function<void()>> actions_;
    QTimer timer_;
};

}  // namespace velto
