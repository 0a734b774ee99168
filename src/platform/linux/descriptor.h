// A POSIX file descriptor with an owner.
#pragma once

#include <unistd.h>

#include <utility>

namespace velto::platform {

// Closed by its destructor. -1 is none.
class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        if (this != &other) {
            Reset();
            number_ = std::exchange(other.number_, -1);
        }
        return *this;
    }
    ~Descriptor() { Reset(); }

    int get() const { return number_; }
    bool valid() const { return number_ >= 0; }
    void Reset() {
        if (number_ >= 0) close(number_);
        number_ = -1;
    }

  private:
    int number_ = -1;
};

}  // namespace velto::platform
