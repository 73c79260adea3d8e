// A PCM wave file of 8 or 16 bits, read frame by frame as 16-bit samples. For a file that stands in for a microphone; the
// engine reads its recordings elsewhere.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/audio.h"
#include "platform/riff.h"

namespace tavimo::platform {

// One moment of sound on the scale of 16 bits; both sides are equal in mono.
struct Frame {
  int left = 0;
  int right = 0;
};

class PcmFile {
 public:
  // Nothing when the file cannot be opened, has no sound, or has one that no device would take (IsDeviceFormat). Names
  // that GBK has no characters for cannot be opened.
  static std::optional<PcmFile> Open(const std::string& nativePath) noexcept;

  [[nodiscard]] const WaveFormat& Format() const noexcept { return format_; }

  // Silence past the end, and for what cannot be read. REQUIRES: index >= 0.
  Frame At(std::int64_t index) noexcept;

 private:
  [[nodiscard]] bool ReadHeader() noexcept;
  void MoveWindowTo(std::int64_t index) noexcept;

  RiffFile file_;
  WaveFormat format_;
  std::int64_t dataOffset_ = 0;
  std::int64_t frameCount_ = 0;
  std::int64_t windowStart_ = 0;  // in frames
  std::int64_t windowCount_ = 0;
  std::array<std::uint8_t, 8192> window_{};
};

}  // namespace tavimo::platform
