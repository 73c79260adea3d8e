#include "plain_wave.h"

#include <cstring>

namespace tavimo::host {

namespace {

using Header = std::array<std::uint8_t, kPlainHeaderBytes>;

void Put(Header& header, std::size_t offset, std::uint32_t value, std::size_t byteCount) {
  for (std::size_t i = 0; i < byteCount; ++i) header[offset + i] = static_cast<std::uint8_t>(value >> (8 * i) & 0xFF);
}

}  // namespace

Header PlainHeader(const PlainWave& wave, std::uint64_t dataLength) {
  constexpr std::uint64_t kRiffSizeLeavesOut = 8;
  Header header{};
  const std::uint32_t frameBytes = std::uint32_t{wave.channels} * wave.bitsPerSample / 8;
  std::memcpy(header.data(), "RIFF....WAVEfmt ", 16);
  std::memcpy(header.data() + 36, "data", 4);
  Put(header, 4, static_cast<std::uint32_t>(kPlainHeaderBytes - kRiffSizeLeavesOut + dataLength + dataLength % 2), 4);
  Put(header, 16, 16, 4);
  Put(header, 20, 1, 2);
  Put(header, 22, wave.channels, 2);
  Put(header, 24, wave.sampleRate, 4);
  Put(header, 28, wave.sampleRate * frameBytes, 4);
  Put(header, 32, frameBytes, 2);
  Put(header, 34, wave.bitsPerSample, 2);
  Put(header, 40, static_cast<std::uint32_t>(dataLength), 4);
  return header;
}

}  // namespace tavimo::host
