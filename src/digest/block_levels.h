// From sound to levels: one level for every 40 ms block, taken from the block's last sample alone.
//
//   16-bit: the magnitude of the signed sample shifted right by 8 bits toward minus infinity (-32768 gives 128)
//   other:  the distance of the unsigned byte from 128
//
// With two channels that is the second channel's sample of the block's last frame.
#pragma once

#include <cstdint>
#include <span>

namespace tavimo::digest {

inline constexpr std::int32_t kBlocksPerSecond = 25;
inline constexpr std::int32_t kBlockMs = 40;

struct BlockShape {
  std::int64_t blockBytes = 0;  // 0 or below: no blocks can be cut
  std::int32_t sampleBytes = 1;
};

// Any channel count but 1 is two channels, any sample size but 16 bits is 8 bits.
[[nodiscard]] BlockShape ShapeOfBlocks(std::int32_t channels, std::int32_t bitsPerSample,
                                       std::int32_t sampleRate) noexcept;

// Takes the sound in pieces of any size and gives the levels of the blocks that each piece completes.
// REQUIRES: shape.blockBytes > 0; every piece but the last has an even number of bytes.
class BlockLevels {
 public:
  explicit BlockLevels(BlockShape shape) noexcept : shape_(shape), nextBlockEnd_(shape.blockBytes) {}

  // Writes a level for each block that ends in the piece; returns how many. levels has room for LevelRoom().
  std::int64_t Take(std::span<const std::uint8_t> piece, std::uint8_t* levels) noexcept;

  // The level of a last block that is shorter than the others: that of its last whole sample, 0 when it has none.
  // False when the sound ended with a whole block.
  [[nodiscard]] bool TakeRest(std::uint8_t& level) const noexcept;

  [[nodiscard]] std::int64_t LevelRoom(std::int64_t pieceBytes) const noexcept {
    return pieceBytes / shape_.blockBytes + 1;
  }
  [[nodiscard]] std::int64_t BytesTaken() const noexcept { return bytesTaken_; }
  [[nodiscard]] std::int64_t BlockBytes() const noexcept { return shape_.blockBytes; }

 private:
  [[nodiscard]] std::uint8_t LevelAt(const std::uint8_t* sample) const noexcept;

  BlockShape shape_;
  std::int64_t nextBlockEnd_;
  std::int64_t bytesTaken_ = 0;
  std::uint8_t lastLevel_ = 0;  // of the last whole sample taken
};

}  // namespace tavimo::digest
