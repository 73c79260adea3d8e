// Sound of any kind that this program can decode, frame by frame, as numbers between -1 and 1.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>

namespace tavimo::host {

class SoundSource {
 public:
  SoundSource() = default;
  SoundSource(const SoundSource&) = delete;
  SoundSource& operator=(const SoundSource&) = delete;
  virtual ~SoundSource() = default;

  [[nodiscard]] virtual int SampleRate() const = 0;
  [[nodiscard]] virtual int Channels() const = 0;
  // As the file tells; an estimate in some kinds of MP3.
  [[nodiscard]] virtual std::int64_t FrameCount() const = 0;
  [[nodiscard]] virtual bool IsCountEstimated() const = 0;
  // Whether every sample is a 16-bit number exactly, so that nothing is rounded.
  [[nodiscard]] virtual bool IsSixteenBits() const = 0;

  // Whether the sound ended in a fault instead of at its end.
  [[nodiscard]] virtual bool IsDamaged() const = 0;

  // Frames read into a room of whole frames; 0 at the end.
  [[nodiscard]] virtual std::int64_t Read(std::span<float> samples) = 0;
};

// A Refusal when the file cannot be read or is no sound that can be decoded.
[[nodiscard]] std::unique_ptr<SoundSource> OpenSound(const std::filesystem::path& file);

}  // namespace tavimo::host
