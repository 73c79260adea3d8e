// Implements message_queue.h: a ring behind one mutex. No call to a host is made from here.
#include "platform/linux/message_queue.h"

#include <chrono>

namespace tavimo::platform {

bool MessageQueue::Push(const Message& message) noexcept {
  {
    const std::lock_guard lock(mutex_);
    if (count_ == kCapacity) return false;
    At(count_++) = message;
  }
  arrived_.notify_one();
  return true;
}

bool MessageQueue::Pop(Message& message) noexcept {
  const std::lock_guard lock(mutex_);
  if (count_ == 0) return false;
  message = At(0);
  first_ = (first_ + 1) % kCapacity;
  --count_;
  return true;
}

std::size_t MessageQueue::WaitForFirst(int timeoutMs) noexcept {
  std::unique_lock lock(mutex_);
  const auto somethingWaits = [this] { return count_ > 0; };
  if (timeoutMs < 0) {
    arrived_.wait(lock, somethingWaits);
  } else {
    arrived_.wait_for(lock, std::chrono::milliseconds(timeoutMs), somethingWaits);
  }
  return count_;
}

}  // namespace tavimo::platform
