#include "recording_writer.h"

#include <algorithm>
#include <cmath>

#include "refusal.h"

namespace tavimo::host {

namespace {

constexpr int kBytesPerSample = 2;

}  // namespace

RecordingWriter::RecordingWriter(const std::filesystem::path& path, int sampleRate, int channels, Rounding rounding)
    : file_(path), sampleRate_(sampleRate), channels_(channels), rounding_(rounding) {
  const auto header = PlainHeader(Wave(), 0);
  file_.Write(header.data(), header.size());
}

PlainWave RecordingWriter::Wave() const {
  return {static_cast<std::uint32_t>(sampleRate_), static_cast<std::uint16_t>(channels_), 8 * kBytesPerSample};
}

// Two steps of a linear congruential generator (Numerical Recipes' constants), their difference triangular between -1
// and 1.
float RecordingWriter::Noise() {
  const auto next = [this] {
    random_ = random_ * 1664525U + 1013904223U;
    return static_cast<float>(random_ >> 8) * 0x1p-24F;
  };
  const float first = next();
  return first - next();
}

void RecordingWriter::Write(std::span<const float> samples) {
  bytes_.resize(samples.size() * kBytesPerSample);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const float noise = rounding_ == Rounding::Dithered ? Noise() : 0.0F;
    const float step = std::isfinite(samples[i]) ? samples[i] * 32768.0F + noise : 0.0F;
    const auto value = static_cast<std::int16_t>(std::lrint(std::clamp(step, -32768.0F, 32767.0F)));
    bytes_[2 * i] = static_cast<std::uint8_t>(value & 0xFF);
    bytes_[2 * i + 1] = static_cast<std::uint8_t>(value >> 8 & 0xFF);
  }
  byteCount_ += bytes_.size();
  if (byteCount_ > kLongestRecordingBytes - kPlainHeaderBytes) {
    throw Refusal(
        "as a recording it would be 2 GiB or longer, too much for the engine; a lower --rate or --channels 1 helps");
  }
  file_.Write(bytes_.data(), bytes_.size());
}

void RecordingWriter::Finish() {
  if (byteCount_ == 0) throw Refusal("it holds no sound");
  const auto header = PlainHeader(Wave(), byteCount_);
  file_.WriteAt(0, header.data(), header.size());
  file_.PutInPlace();
}

}  // namespace tavimo::host
