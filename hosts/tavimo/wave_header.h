// What a recording is, read from its header alone, and why the engine cannot work with it where it cannot. Knows the
// engine's rules for wave files; reads no sound.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace tavimo::host {

inline constexpr int kLevelMs = 40;
inline constexpr int kLevelsPerSecond = 25;

struct WaveHeader {
  std::uint16_t formatTag = 0;
  std::uint16_t codedTag = 0;  // what the samples are: the format tag, or the one behind the extensible header's
  std::uint16_t channels = 0;
  std::uint16_t blockAlign = 0;  // bytes of a frame, as the format chunk has it
  std::uint16_t bitsPerSample = 0;
  std::uint32_t sampleRate = 0;
  std::uint64_t dataOffset = 0;
  std::uint64_t storedDataLength = 0;  // what the data chunk says
  std::uint64_t dataLength = 0;        // what the file holds of it
  std::string problem;  // why the engine cannot work with the file, for "it cannot be used: …"; or empty

  [[nodiscard]] bool HasFormat() const { return channels != 0; }
  [[nodiscard]] bool IsTruncated() const { return dataLength < storedDataLength; }

  // The bytes of one level. REQUIRES: problem is empty, as for the following three.
  [[nodiscard]] std::uint64_t BlockBytes() const;
  // How many levels a digest of the sound has; a last short block counts.
  [[nodiscard]] std::uint64_t LevelCount() const;
  [[nodiscard]] std::int64_t DurationMs() const;
  // How many bytes of sound, in whole frames, lie before a time; at most dataLength.
  [[nodiscard]] std::uint64_t ByteAt(std::int64_t timeMs) const;
};

// Whose word counts about how long the file and its sound are.
enum class Lengths {
  Stored,
  OfFile,  // for a tape that nobody closed: the sound reaches to the end of the file, whatever its header says
};

[[nodiscard]] WaveHeader ReadWaveHeader(const std::filesystem::path& path, Lengths lengths = Lengths::Stored);

// "16-bit stereo, 44100 Hz".
[[nodiscard]] std::string DescribeFormat(const WaveHeader& header);

}  // namespace tavimo::host
