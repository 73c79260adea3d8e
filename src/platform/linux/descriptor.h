// One thing: a file descriptor with one owner, which closes it.
#pragma once

#include <unistd.h>

#include <utility>

namespace tavimo::platform {

class Descriptor {
 public:
  explicit Descriptor(int value = -1) noexcept : value_(value) {}
  Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Descriptor() { Close(); }

  [[nodiscard]] bool IsOpen() const noexcept { return value_ >= 0; }
  [[nodiscard]] int Get() const noexcept { return value_; }

  // False when the system reports an error that it held back until now.
  bool Close() noexcept { return value_ < 0 || ::close(std::exchange(value_, -1)) == 0; }

 private:
  int value_;
};

}  // namespace tavimo::platform
