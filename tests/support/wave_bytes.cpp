#include "support/wave_bytes.h"

#include <algorithm>

namespace tavimo::tests {

Bytes Numbered(std::size_t count) {
  Bytes bytes(count);
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<std::uint8_t>(i * 31 + i / 251);
  return bytes;
}

Bytes Part(const Bytes& bytes, std::size_t from, std::size_t to) {
  return {bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.begin() + static_cast<std::ptrdiff_t>(to)};
}

Bytes Joined(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Bytes With(Bytes bytes, std::size_t place, const Bytes& others) {
  std::copy(others.begin(), others.end(), bytes.begin() + static_cast<std::ptrdiff_t>(place));
  return bytes;
}

void AppendText(Bytes& bytes, std::string_view text) { bytes.insert(bytes.end(), text.begin(), text.end()); }

void AppendLittleEndian(Bytes& bytes, std::uint64_t value, int byteCount) {
  for (int i = 0; i < byteCount; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

Bytes Chunk(std::string_view id, const Bytes& content) {
  Bytes chunk;
  AppendText(chunk, id);
  AppendLittleEndian(chunk, content.size(), 4);
  chunk.insert(chunk.end(), content.begin(), content.end());
  if (content.size() % 2 == 1) chunk.push_back(0);
  return chunk;
}

Bytes FormatRecord(const WaveSpec& spec) {
  Bytes record;
  AppendLittleEndian(record, spec.tag, 2);
  AppendLittleEndian(record, spec.channels, 2);
  AppendLittleEndian(record, spec.rate, 4);
  AppendLittleEndian(record, std::uint64_t{spec.rate} * spec.channels * spec.bits / 8, 4);
  AppendLittleEndian(record, static_cast<std::uint64_t>(spec.channels) * spec.bits / 8, 2);
  AppendLittleEndian(record, spec.bits, 2);
  return record;
}

Bytes RiffWave(const std::vector<Bytes>& chunks) {
  Bytes content;
  AppendText(content, "WAVE");
  for (const Bytes& chunk : chunks) content.insert(content.end(), chunk.begin(), chunk.end());
  return Chunk("RIFF", content);
}

Bytes WaveFile(const WaveSpec& spec, const Bytes& sound) {
  return RiffWave({Chunk("fmt ", FormatRecord(spec)), Chunk("data", sound)});
}

Bytes Samples16(const std::vector<std::int16_t>& samples) {
  Bytes bytes;
  for (const std::int16_t sample : samples) AppendLittleEndian(bytes, static_cast<std::uint16_t>(sample), 2);
  return bytes;
}

}  // namespace tavimo::tests
