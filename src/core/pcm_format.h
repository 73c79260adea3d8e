// The 16-byte PCM format record of a wave file's "fmt " chunk, and what follows from it.
//
//   offset  size  field (little-endian)
//        0     2  format tag, 1 = PCM
//        2     2  channels
//        4     4  sample rate, frames per second
//        8     4  average bytes per second, as stored; nothing here relies on it
//       12     2  block align, bytes per frame
//       14     2  bits per sample
//
// Source: IBM and Microsoft, Multimedia Programming Interface 1.0 (1991), chapter "Waveform Audio".
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/little_endian.h"

namespace tavimo::core {

inline constexpr std::size_t kPcmFormatBytes = 16;
inline constexpr std::uint16_t kPcmFormatTag = 1;
using PcmFormatRecord = std::array<std::uint8_t, kPcmFormatBytes>;

struct PcmFormat {
  std::uint16_t formatTag = 0;
  std::uint16_t channels = 0;
  std::uint32_t sampleRate = 0;
  std::uint32_t averageBytesPerSecond = 0;
  std::uint16_t blockAlign = 0;
  std::uint16_t bitsPerSample = 0;
  friend bool operator==(const PcmFormat&, const PcmFormat&) = default;
};

constexpr PcmFormat ReadPcmFormat(const PcmFormatRecord& record) noexcept {
  const std::uint8_t* bytes = record.data();
  return {ReadU16(bytes),     ReadU16(bytes + 2),  ReadU32(bytes + 4),
          ReadU32(bytes + 8), ReadU16(bytes + 12), ReadU16(bytes + 14)};
}

constexpr PcmFormatRecord WritePcmFormat(const PcmFormat& format) noexcept {
  PcmFormatRecord record{};
  std::uint8_t* bytes = record.data();
  WriteU16(bytes, format.formatTag);
  WriteU16(bytes + 2, format.channels);
  WriteU32(bytes + 4, format.sampleRate);
  WriteU32(bytes + 8, format.averageBytesPerSecond);
  WriteU16(bytes + 12, format.blockAlign);
  WriteU16(bytes + 14, format.bitsPerSample);
  return record;
}

// From the format's own numbers, wrapping at 32 bits; 0 for a format that is not filled.
constexpr std::uint32_t BytesPerSecond(const PcmFormat& format) noexcept {
  return (std::uint32_t{format.channels} * format.bitsPerSample * format.sampleRate) >> 3;
}

}  // namespace tavimo::core
