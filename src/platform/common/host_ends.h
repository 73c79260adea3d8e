// The ends that a host program serves itself: sound it feeds and a position it moves, for tests and for hosts with a
// sound system of their own. They run on the user-interface thread alone.
#pragma once

#include "platform/common/audio_ends.h"

namespace tavimo::platform {

class HostInput final : public InputSource {
 public:
  bool Start() noexcept override { return true; }
  void Stop() noexcept override {}
  [[nodiscard]] bool IsFedByHost() const noexcept override { return true; }
};

class HostOutput final : public OutputSink {
 public:
  void Pause() noexcept override { isPaused_ = true; }
  void Restart() noexcept override { isPaused_ = false; }
  void Reset() noexcept override {
    played_ = 0;
    isPaused_ = false;
  }
  bool GetPlayedBytes(std::uint32_t& byteCount) noexcept override {
    byteCount = played_;
    return true;
  }
  bool Play(std::vector<std::uint8_t>) noexcept override { return true; }
  bool AdvanceByHost(std::uint32_t byteCount) noexcept override {
    if (!isPaused_) played_ += byteCount;
    return true;
  }

 private:
  std::uint32_t played_ = 0;
  bool isPaused_ = false;
};

}  // namespace tavimo::platform
