// A file descriptor with an owner.
#pragma once

#include <unistd.h>

#include <utility>

namespace testSupport {

class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    void close() {
        if (number_ >= 0) ::close(std::exchange(number_, -1));
    }

    int number() const { return number_; }
    bool valid() const { return number_ >= 0; }

  private:
    int number_ = -1;
};

}  // namespace testSupport
