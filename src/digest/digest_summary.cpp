#include "digest/digest_summary.h"

#include <algorithm>
#include <span>

#include "digest/block_levels.h"
#include "platform/files.h"
#include "waveedit/wave_data_file.h"

namespace tavimo::digest {

using platform::ReplacementFile;
using waveedit::WaveDataFile;

namespace {

// Synced: a digest counts as current by its time alone, so an empty one that a power cut left would pass for ever.
SummaryEnd Place(ReplacementFile& digest) noexcept {
  return digest.Commit(ReplacementFile::Durability::Synced) ? SummaryEnd::Written : SummaryEnd::CannotFinish;
}

SummaryEnd WriteRest(const BlockLevels& blocks, SummaryProgress progress, ReplacementFile& digest,
                     SummaryObserver& observer) noexcept {
  std::uint8_t level = 0;
  if (blocks.TakeRest(level)) {
    digest.Write(&level, 1);
    ++progress.blocksDone;
    progress.bytesDone = blocks.BytesTaken();
    if (observer.OnPiece(progress) == Continue::No) return SummaryEnd::Stopped;
  }
  return Place(digest);
}

SummaryEnd WriteLevels(WaveDataFile& wave, BlockShape shape, ReplacementFile& digest, SummaryWorkspace& workspace,
                       SummaryObserver& observer) noexcept {
  BlockLevels blocks(shape);
  SummaryProgress progress{0, 0, shape.blockBytes, wave.dataLength};
  while (digest.IsWhole()) {
    const std::int32_t got = waveedit::WaveDataRead(wave, workspace.sound.data(), kPieceBytes);
    if (got < 0) return SummaryEnd::CannotFinish;
    if (got == 0) return WriteRest(blocks, progress, digest, observer);
    const std::int64_t count =
        blocks.Take(std::span(workspace.sound).first(static_cast<std::size_t>(got)), workspace.levels.data());
    digest.Write(workspace.levels.data(), count);
    progress.blocksDone += count;
    progress.bytesDone = blocks.BytesTaken();
    if (observer.OnPiece(progress) == Continue::No) return SummaryEnd::Stopped;
  }
  return SummaryEnd::CannotFinish;
}

SummaryEnd WriteDigest(WaveDataFile& wave, const char* digestPath, SummaryWorkspace& workspace,
                       SummaryObserver& observer) noexcept {
  ReplacementFile digest;
  if (!digest.Begin(digestPath)) return SummaryEnd::CannotBegin;
  const waveedit::WaveInfo info = waveedit::InfoOf(wave);
  const BlockShape shape = ShapeOfBlocks(info.channels, info.bitsPerSample, info.sampleRate);
  if (shape.blockBytes > 0) return WriteLevels(wave, shape, digest, workspace, observer);
  return Place(digest);  // a rate below 25 has no block of 40 ms: an empty digest
}

}  // namespace

bool ProgressSteps::Next(const SummaryProgress& progress, std::int32_t& percent) noexcept {
  constexpr std::int64_t kStepBlocks = 1024;
  while (nextBlock_ <= progress.blocksDone) {
    const std::int64_t bytes = std::min(nextBlock_ * progress.blockBytes, progress.bytesDone);
    const std::int64_t reached = bytes * 100 / progress.dataLength;
    nextBlock_ += kStepBlocks;
    if (reached <= highest_) continue;
    highest_ = reached;
    percent = static_cast<std::int32_t>(reached);
    return true;
  }
  return false;
}

SummaryEnd SummarizeWave(const char* wavePath, const char* digestPath, SummaryWorkspace& workspace,
                         SummaryObserver& observer) noexcept {
  WaveDataFile wave;
  // A digest over its own recording would leave the learner with the digest.
  if (!wave.path.Assign(core::TextOf(wavePath)) || platform::IsSameFile(wavePath, digestPath) ||
      waveedit::WaveDataOpen(wave) < 0) {
    return SummaryEnd::CannotBegin;
  }
  const SummaryEnd end = WriteDigest(wave, digestPath, workspace, observer);
  waveedit::WaveDataClose(wave);
  return end;
}

}  // namespace tavimo::digest
