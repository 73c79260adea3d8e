// Wave files as bytes, written out field by field, with any fault a test wants.
#pragma once

#include <cstdint>
#include <string_view>

#include "support/scratch_folder.h"

namespace tavimo::tests {

struct WaveSpec {
  std::uint16_t tag = 1;
  std::uint16_t channels = 1;
  std::uint32_t rate = 11025;
  std::uint16_t bits = 16;
};

// Bytes that no other place of theirs repeats: what was lost, doubled or moved shows.
Bytes Numbered(std::size_t count);
Bytes Part(const Bytes& bytes, std::size_t from, std::size_t to);
Bytes Joined(Bytes left, const Bytes& right);
// A copy with other bytes at a place.
Bytes With(Bytes bytes, std::size_t place, const Bytes& others);

void AppendText(Bytes& bytes, std::string_view text);
void AppendLittleEndian(Bytes& bytes, std::uint64_t value, int byteCount);

// id, size, content, and a pad byte when the size is odd.
Bytes Chunk(std::string_view id, const Bytes& content);

// The 16 bytes of a format record.
Bytes FormatRecord(const WaveSpec& spec);

// "RIFF", size, "WAVE", then the chunks as given.
Bytes RiffWave(const std::vector<Bytes>& chunks);

// The plain file: a 16-byte format chunk and a data chunk.
Bytes WaveFile(const WaveSpec& spec, const Bytes& sound);

// 16-bit samples as bytes.
Bytes Samples16(const std::vector<std::int16_t>& samples);

}  // namespace tavimo::tests
