#include "peak_digest.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <fstream>
#include <span>
#include <utility>

#include "refusal.h"
#include "system.h"

namespace tavimo::host {

namespace {

static_assert(std::endian::native == std::endian::little, "samples are read as they are stored");

constexpr std::size_t kPieceBytes = 512 * 1024;  // stays in the cache between reading and looking

// Lowest and highest at once, without a branch: the compiler does eight or sixteen samples a step.
template <typename Sample>
std::pair<Sample, Sample> Extremes(std::span<const Sample> samples, Sample rest) {
  Sample low = rest;
  Sample high = rest;
  for (const Sample sample : samples) {
    low = std::min(low, sample);
    high = std::max(high, sample);
  }
  return {low, high};
}

std::uint8_t LevelOf(std::span<const std::int16_t> samples) {
  const auto [low, high] = Extremes<std::int16_t>(samples, 0);
  return static_cast<std::uint8_t>(std::max(std::abs(low >> 8), high >> 8));
}

std::uint8_t LevelOf(std::span<const std::uint8_t> samples) {
  const auto [low, high] = Extremes<std::uint8_t>(samples, 128);
  return static_cast<std::uint8_t>(std::max(128 - low, high - 128));
}

class LevelMaker {
 public:
  LevelMaker(const std::filesystem::path& recording, const WaveHeader& header)
      : header_(header),
        blockBytes_(static_cast<std::size_t>(header.BlockBytes())),
        pieceBytes_(std::max<std::size_t>(kPieceBytes / blockBytes_, 1) * blockBytes_),
        piece_((pieceBytes_ + 1) / 2) {
    file_.rdbuf()->pubsetbuf(nullptr, 0);  // straight into the piece
    file_.open(recording, std::ios::binary);
    file_.seekg(static_cast<std::streamoff>(header.dataOffset));
    levels_.reserve(static_cast<std::size_t>(header.LevelCount()));
  }

  std::vector<std::uint8_t> Make(ProgressBar& progress) {
    for (std::uint64_t done = 0; done < header_.dataLength;) {
      StopIfInterrupted();
      const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(pieceBytes_, header_.dataLength - done));
      file_.read(reinterpret_cast<char*>(piece_.data()), static_cast<std::streamsize>(count));
      if (!file_) throw Refusal("its sound cannot be read to the end");
      TakePiece(count);
      done += count;
      progress.Show(static_cast<int>(done * 100 / header_.dataLength));
    }
    levels_.resize(static_cast<std::size_t>(header_.LevelCount()), 0);  // half a sample alone in the last block
    return std::move(levels_);
  }

 private:
  void TakePiece(std::size_t count) {
    if (header_.bitsPerSample == 16) {
      TakeBlocks(std::span<const std::int16_t>(piece_.data(), count / 2));
    } else {
      TakeBlocks(std::span<const std::uint8_t>(reinterpret_cast<const std::uint8_t*>(piece_.data()), count));
    }
  }

  template <typename Sample>
  void TakeBlocks(std::span<const Sample> samples) {
    const std::size_t blockSamples = blockBytes_ / sizeof(Sample);
    while (!samples.empty()) {
      const std::size_t count = std::min(blockSamples, samples.size());
      levels_.push_back(LevelOf(samples.first(count)));
      samples = samples.subspan(count);
    }
  }

  const WaveHeader& header_;
  std::size_t blockBytes_;
  std::size_t pieceBytes_;
  std::vector<std::int16_t> piece_;
  std::ifstream file_;
  std::vector<std::uint8_t> levels_;
};

}  // namespace

std::vector<std::uint8_t> PeakLevels(const std::filesystem::path& recording, const WaveHeader& header,
                                     ProgressBar& progress) {
  return LevelMaker(recording, header).Make(progress);
}

}  // namespace tavimo::host
