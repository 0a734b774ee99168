#include "shell/hand_over.h"

#include <utility>

namespace velto {

void LeaveToNextProcess() {
    platform::Instance().Release();
}

HandOver::HandOver(std::function<void()> arrived) : arrived_(std::move(arrived)) {
    auto listener = platform::Instance().Listen([this](const std::string& name) { Wait(name); });
    if (listener.ok()) listener_ = std::move(listener).value();
}

HandOver::~HandOver() {
    {
        const std::lock_guard lock(mutex_);
        closed_ = true;
    }
    handled_.notify_all();
    listener_.reset();
}

void HandOver::Wait(const std::string& name) {
    std::unique_lock lock(mutex_);
    if (closed_) return;
    name_ = name;
    waiting_ = true;
    arrived_();
    handled_.wait(lock, [this] { return !waiting_ || closed_; });
}

std::optional<std::string> HandOver::Take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(name_, std::nullopt);
}

void HandOver::Done() {
    {
        const std::lock_guard lock(mutex_);
        waiting_ = false;
    }
    handled_.notify_all();
}

}  // namespace velto
