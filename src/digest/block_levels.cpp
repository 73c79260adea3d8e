#include "digest/block_levels.h"

#include <cstdlib>

#include "core/little_endian.h"

namespace tavimo::digest {

BlockShape ShapeOfBlocks(std::int32_t channels, std::int32_t bitsPerSample, std::int32_t sampleRate) noexcept {
  const std::int32_t sampleBytes = bitsPerSample == 16 ? 2 : 1;
  const std::int32_t frameBytes = sampleBytes * (channels == 1 ? 1 : 2);
  return {std::int64_t{sampleRate / kBlocksPerSecond} * frameBytes, sampleBytes};
}

std::uint8_t BlockLevels::LevelAt(const std::uint8_t* sample) const noexcept {
  if (shape_.sampleBytes == 1) return static_cast<std::uint8_t>(std::abs(*sample - 128));
  return static_cast<std::uint8_t>(std::abs(static_cast<std::int16_t>(core::ReadU16(sample)) >> 8));
}

std::int64_t BlockLevels::Take(std::span<const std::uint8_t> piece, std::uint8_t* levels) noexcept {
  // Blocks and pieces are whole samples, so a block's last sample lies wholly in the piece that ends the block.
  const auto pieceBytes = static_cast<std::int64_t>(piece.size());
  std::int64_t count = 0;
  for (; nextBlockEnd_ <= bytesTaken_ + pieceBytes; nextBlockEnd_ += shape_.blockBytes) {
    levels[count++] = LevelAt(piece.data() + (nextBlockEnd_ - bytesTaken_ - shape_.sampleBytes));
  }
  const std::int64_t wholeBytes = pieceBytes - pieceBytes % shape_.sampleBytes;
  if (wholeBytes > 0) lastLevel_ = LevelAt(piece.data() + wholeBytes - shape_.sampleBytes);
  bytesTaken_ += pieceBytes;
  return count;
}

bool BlockLevels::TakeRest(std::uint8_t& level) const noexcept {
  const std::int64_t restBytes = bytesTaken_ - (nextBlockEnd_ - shape_.blockBytes);
  if (restBytes == 0) return false;
  level = restBytes < shape_.sampleBytes ? std::uint8_t{0} : lastLevel_;
  return true;
}

}  // namespace tavimo::digest
