#include "digest/digest_adjust.h"

#include <array>

#include "digest/block_levels.h"
#include "digest/level_reader.h"
#include "platform/files.h"

namespace tavimo::digest {

using platform::FileStream;
using platform::OpenMode;

namespace {

constexpr const char* kTemporaryDigest = "tmpwav\\tmptmptmp.tmp";

// How often a level is dropped (every period-th; 0 or 1 drops all), or -1 when the digest is not too long.
std::int64_t DropPeriod(std::int64_t levelCount, std::int32_t durationMs) noexcept {
  const std::int64_t excess = (levelCount * kBlockMs - durationMs) / kBlockMs;
  return excess <= 0 ? -1 : levelCount / excess;
}

bool WriteShortened(FileStream& digest, std::int64_t period) noexcept {
  FileStream shortened = FileStream::Open(kTemporaryDigest, OpenMode::Create);
  if (!shortened.IsOpen()) return false;
  std::array<std::uint8_t, 4096> kept;
  LevelReader levels(digest, 0);
  std::int64_t counter = 0;
  for (std::span<const std::uint8_t> ready;
       !(ready = levels.Ready().first(std::min(levels.Ready().size(), kept.size()))).empty();
       levels.Skip(ready.size())) {
    std::size_t keptCount = 0;
    for (const std::uint8_t level : ready) {
      if (++counter < period) {
        kept[keptCount++] = level;
      } else {
        counter = 0;
      }
    }
    if (!shortened.Write(kept.data(), static_cast<std::int64_t>(keptCount))) return false;
  }
  return shortened.Close();
}

}  // namespace

void AdjustDigest(const char* digestPath, std::int32_t durationMs) noexcept {
  FileStream digest = FileStream::Open(digestPath, OpenMode::Read);
  if (!digest.IsOpen() || platform::IsSameFile(digestPath, kTemporaryDigest)) return;
  const std::int64_t period = DropPeriod(digest.Length(), durationMs);
  platform::FileTime time;
  if (period < 0 || !platform::GetLastWriteTime(digestPath, time)) return;
  const bool written = WriteShortened(digest, period);
  digest.Close();
  if (written && platform::CopyFileOver(kTemporaryDigest, digestPath)) platform::SetLastWriteTime(digestPath, time);
  platform::RemoveFile(kTemporaryDigest);
}

}  // namespace tavimo::digest
