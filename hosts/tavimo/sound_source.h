// Sound of any kind the decoding library knows, frame by frame, as numbers between -1 and 1.
#pragma once

#include <sndfile.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace tavimo::host {

class SoundSource {
 public:
  // A Refusal when the file cannot be read or is no sound.
  explicit SoundSource(const std::filesystem::path& file);

  [[nodiscard]] int SampleRate() const { return info_.samplerate; }
  [[nodiscard]] int Channels() const { return info_.channels; }
  // As the file tells; an estimate in some kinds of MP3.
  [[nodiscard]] std::int64_t FrameCount() const { return info_.frames; }
  [[nodiscard]] bool IsCountEstimated() const { return (info_.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG; }
  // Whether every sample is a 16-bit number exactly, so that nothing is rounded.
  [[nodiscard]] bool IsSixteenBits() const;

  // Whether the sound ended in a fault instead of at its end.
  [[nodiscard]] bool IsDamaged() const;

  // Frames read into a room of whole frames; 0 at the end.
  [[nodiscard]] std::int64_t Read(std::span<float> samples);

 private:
  SF_INFO info_{};
  std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file_;
};

}  // namespace tavimo::host
