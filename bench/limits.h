// The limits: programs that move the same bytes as a job with next to no work. Plain system calls, pieces of 256 KiB,
// nothing checked but whether a call failed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace tavimo::bench {

using ByteRange = std::pair<std::int64_t, std::int64_t>;  // offset and length

// Reads a file once; the sum of one byte of each piece, so that nothing is left out. Its length with the second.
std::int64_t ReadOnce(const char* path);
[[nodiscard]] std::int64_t LengthOf(const char* path);

// Reads a small file at one stroke.
void ReadInto(const char* path, std::span<std::uint8_t> bytes);

// Copies ranges of a file, one behind another, into a new file.
void CopyRanges(const char* from, const char* to, const std::vector<ByteRange>& ranges);

// Reads all and writes every second 16-bit sample.
void KeepEverySecondSample(const char* from, const char* to);

// One pass over the levels: how many are above a threshold.
[[nodiscard]] std::int64_t CountSounds(std::span<const std::uint8_t> levels, std::uint8_t threshold);

// Averages levelsPerColumn levels for each column and fills it from the bottom.
void FillColumns(std::span<const std::uint8_t> levels, std::size_t levelsPerColumn, std::size_t width,
                 std::size_t height, std::uint32_t* pixels);

// Fills lines of a width greedily, byte by byte, ending one at each line feed; how many lines.
[[nodiscard]] std::int64_t FillLines(const char* path, std::span<const std::int32_t, 256> advances, std::int32_t width);

// Finds the line ends and tests the first bytes of each line; writes those that are text.
void SortLines(const char* from, const char* to);

// A file that blocks are appended to.
class BlockFile {
 public:
  explicit BlockFile(const char* path);
  BlockFile(const BlockFile&) = delete;
  BlockFile& operator=(const BlockFile&) = delete;
  ~BlockFile();
  // Appends a block and sums the magnitudes of its 16-bit samples.
  std::int64_t Append(std::span<const std::uint8_t> block);

 private:
  int descriptor_;
};

}  // namespace tavimo::bench
