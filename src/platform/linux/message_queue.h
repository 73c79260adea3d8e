// The messages that wait for the process's windows, in one order over all of them. Any thread may put one in; the
// user-interface thread takes them out. Knows nothing of windows but their handles.
#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "tavimo.h"

namespace tavimo::platform {

struct Message {
  VcWindow window;  // null: for no window
  std::uint32_t number;
  std::uintptr_t wparam;
  std::intptr_t lparam;
};

class MessageQueue {
 public:
  // As the platform's own. The room is part of the object: a device's thread must be able to post without asking for
  // memory.
  static constexpr std::size_t kCapacity = 10'000;

  // False when the queue is full.
  bool Push(const Message& message) noexcept;

  // False when nothing waits.
  bool Pop(Message& message) noexcept;

  // Waits up to timeoutMs (below 0: for ever) for a first message; how many wait then.
  std::size_t WaitForFirst(int timeoutMs) noexcept;

  // Takes out every message that isUnwanted is true of; the others keep their order.
  template <typename Predicate>
  void RemoveIf(Predicate isUnwanted) noexcept {
    const std::lock_guard lock(mutex_);
    std::size_t kept = 0;
    for (std::size_t place = 0; place < count_; ++place) {
      if (!isUnwanted(At(place))) At(kept++) = At(place);
    }
    count_ = kept;
  }

 private:
  [[nodiscard]] Message& At(std::size_t place) noexcept { return ring_[(first_ + place) % kCapacity]; }

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::array<Message, kCapacity> ring_;
  std::size_t first_ = 0;
  std::size_t count_ = 0;
};

}  // namespace tavimo::platform
