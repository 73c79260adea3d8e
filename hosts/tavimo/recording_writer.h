// Writes a recording: a wave file of 16-bit PCM with the plain header of 44 bytes (Microsoft's RIFF/WAVE), from numbers
// between -1 and 1.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <vector>

#include "new_file.h"
#include "plain_wave.h"

namespace tavimo::host {

inline constexpr std::uint64_t kLongestRecordingBytes = 0x7FFFFFFF;  // of sound; the engine counts in signed 32 bits

enum class Rounding {
  Exact,     // the numbers are 16-bit numbers already
  Dithered,  // with triangular noise of one step, so that quiet passages fade instead of crackling
};

class RecordingWriter {
 public:
  RecordingWriter(const std::filesystem::path& path, int sampleRate, int channels, Rounding rounding);

  // Whole frames. What is louder than full scale is clipped. A Refusal when the recording becomes too long for the engine
  // or the disk is full.
  void Write(std::span<const float> samples);

  [[nodiscard]] std::uint64_t FrameCount() const { return byteCount_ / 2 / static_cast<std::uint64_t>(channels_); }

  // Puts the whole recording in its place. A Refusal when it has no sound or could not be written.
  void Finish();

 private:
  [[nodiscard]] PlainWave Wave() const;
  [[nodiscard]] float Noise();

  NewFile file_;
  std::vector<std::uint8_t> bytes_;
  std::uint64_t byteCount_ = 0;
  int sampleRate_;
  int channels_;
  Rounding rounding_;
  std::uint32_t random_ = 1;  // the same file every time
};

}  // namespace tavimo::host
