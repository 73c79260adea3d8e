// The plain header of a wave file (Microsoft's RIFF/WAVE, PCM), 44 bytes:
//
//   0  "RIFF"  4  file length - 8   8  "WAVE"
//  12  "fmt " 16  16               20  tag 1    22  channels   24  rate   28  bytes a second   32  bytes a frame   34  bits
//  36  "data" 40  data length
#pragma once

#include <array>
#include <cstdint>

namespace tavimo::host {

inline constexpr std::size_t kPlainHeaderBytes = 44;

struct PlainWave {
  std::uint32_t sampleRate = 0;
  std::uint16_t channels = 0;
  std::uint16_t bitsPerSample = 0;
};

// REQUIRES: the whole file stays below 4 GiB.
[[nodiscard]] std::array<std::uint8_t, kPlainHeaderBytes> PlainHeader(const PlainWave& wave, std::uint64_t dataLength);

}  // namespace tavimo::host
