// The blocks that are queued on one input device: filled in the order queued, each given back with one message. Shared by
// the thread that brings the sound and the user-interface thread. Knows nothing of where the sound comes from.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>

#include "platform/audio.h"

namespace tavimo::platform {

class BlockQueue {
 public:
  static constexpr std::size_t kCapacity = 16;

  // silence is the byte that stands for it in the device's format; a null window gets no messages.
  BlockQueue(VcWindow window, std::uint8_t silence) noexcept : window_(window), silence_(silence) {}

  // The handle that messages name. REQUIRES: the queue was never started.
  void SetDevice(WaveInput device) noexcept { device_ = device; }

  AudioResult Prepare(WaveBlock& block) noexcept;
  AudioResult Unprepare(WaveBlock& block) noexcept;

  // kAudioUnprepared, kAudioStillQueued, or kAudioNoMemory when the queue is full.
  AudioResult Add(WaveBlock& block) noexcept;

  void Start() noexcept;

  // The bytes taken: those for which there is a block, and none unless started.
  std::size_t Fill(std::span<const std::uint8_t> sound) noexcept;

  // Gives back the block that is being filled. Empty ones stay, and nothing is taken until the next start.
  void Stop() noexcept;

  // Gives back every block. REQUIRES: stopped.
  void ReturnAll() noexcept;

  [[nodiscard]] bool IsStarted() const noexcept;
  [[nodiscard]] bool IsEmpty() const noexcept;

 private:
  [[nodiscard]] WaveBlock& First() noexcept { return *ring_[first_]; }
  [[nodiscard]] bool Contains(const WaveBlock& block) const noexcept;
  void ReturnFirst() noexcept;

  VcWindow window_;
  std::uint8_t silence_;
  WaveInput device_ = 0;
  mutable std::mutex mutex_;  // over all that follows and over every block in the ring
  std::array<WaveBlock*, kCapacity> ring_{};
  std::size_t first_ = 0;
  std::size_t count_ = 0;
  bool isStarted_ = false;
};

}  // namespace tavimo::platform
