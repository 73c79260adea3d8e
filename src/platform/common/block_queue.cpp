// Implements block_queue.h. Messages are posted with the queue locked, because their order is the order of the blocks;
// the locks that posting takes are held for a few instructions and never around a call of this queue.
#include "platform/common/block_queue.h"

#include <algorithm>
#include <cstring>

#include "platform/windows.h"

namespace tavimo::platform {

AudioResult BlockQueue::Prepare(WaveBlock& block) noexcept {
  const std::lock_guard lock(mutex_);
  if ((block.flags & kBlockPrepared) == 0) block.flags = (block.flags | kBlockPrepared) & ~kBlockDone;
  return kAudioOk;
}

AudioResult BlockQueue::Unprepare(WaveBlock& block) noexcept {
  const std::lock_guard lock(mutex_);
  if (Contains(block)) return kAudioStillQueued;
  block.flags &= ~kBlockPrepared;
  return kAudioOk;
}

AudioResult BlockQueue::Add(WaveBlock& block) noexcept {
  const std::lock_guard lock(mutex_);
  if (Contains(block)) return kAudioStillQueued;
  if ((block.flags & kBlockPrepared) == 0 || !block.data || block.bufferLength == 0) return kAudioUnprepared;
  if (count_ == kCapacity) return kAudioNoMemory;
  block.flags = (block.flags | kBlockQueued) & ~kBlockDone;
  block.bytesRecorded = 0;
  ring_[(first_ + count_) % kCapacity] = &block;
  ++count_;
  return kAudioOk;
}

void BlockQueue::Start() noexcept {
  const std::lock_guard lock(mutex_);
  isStarted_ = true;
}

std::size_t BlockQueue::Fill(std::span<const std::uint8_t> sound) noexcept {
  const std::lock_guard lock(mutex_);
  std::size_t taken = 0;
  while (isStarted_ && count_ > 0 && taken < sound.size()) {
    WaveBlock& block = First();
    const auto byteCount = static_cast<std::uint32_t>(
        std::min<std::size_t>(sound.size() - taken, block.bufferLength - block.bytesRecorded));
    std::memcpy(block.data + block.bytesRecorded, sound.data() + taken, byteCount);
    block.bytesRecorded += byteCount;
    taken += byteCount;
    if (block.bytesRecorded == block.bufferLength) ReturnFirst();
  }
  return taken;
}

void BlockQueue::Stop() noexcept {
  const std::lock_guard lock(mutex_);
  isStarted_ = false;
  if (count_ > 0 && First().bytesRecorded > 0) ReturnFirst();
}

void BlockQueue::ReturnAll() noexcept {
  const std::lock_guard lock(mutex_);
  while (count_ > 0) ReturnFirst();
}

bool BlockQueue::IsStarted() const noexcept {
  const std::lock_guard lock(mutex_);
  return isStarted_;
}

bool BlockQueue::IsEmpty() const noexcept {
  const std::lock_guard lock(mutex_);
  return count_ == 0;
}

bool BlockQueue::Contains(const WaveBlock& block) const noexcept {
  for (std::size_t place = 0; place < count_; ++place) {
    if (ring_[(first_ + place) % kCapacity] == &block) return true;
  }
  return false;
}

// A reader that takes the whole block whatever it says it holds gets silence, never an old sound.
void BlockQueue::ReturnFirst() noexcept {
  WaveBlock& block = First();
  std::memset(block.data + block.bytesRecorded, silence_, block.bufferLength - block.bytesRecorded);
  block.flags = (block.flags | kBlockDone) & ~kBlockQueued;
  first_ = (first_ + 1) % kCapacity;
  --count_;
  if (window_) PostToWindow(window_, kMessageWaveInData, device_, reinterpret_cast<std::intptr_t>(&block));
}

}  // namespace tavimo::platform
