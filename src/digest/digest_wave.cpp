#include "digest/digest_wave.h"

#include <algorithm>

#include "core/arithmetic.h"
#include "digest/block_levels.h"
#include "digest/level_reader.h"
#include "platform/drawing.h"

namespace tavimo::digest {

namespace {

bool CanDraw(const WaveArea& area, std::int32_t levels) noexcept {
  return area.height >= 1 && area.width >= 1 && levels >= 1;
}

// A level of 128 fills the scale; the factor comes first so that the truncation is the same everywhere.
std::int32_t ScaledHeight(double level, std::int32_t scale) noexcept {
  return core::TruncateToInt32(level * 0.0078125 * scale);
}

// The same scale; the level times the height comes first, which truncates alike because both are whole.
std::int32_t OverviewHeight(std::uint32_t level, std::int32_t scale) noexcept {
  return core::TruncateToInt32(static_cast<double>(level) * scale * 0.0078125);
}

// Signed product, unsigned division: a negative time lies far past the end of any digest.
std::uint32_t HalfWaveStart(std::int32_t startMs, std::int32_t levelsPerSecond) noexcept {
  return static_cast<std::uint32_t>(core::WrappingMultiply(levelsPerSecond, startMs)) / 1000;
}

// Reads the heights of up to pairs pairs of columns; returns how many the digest had.
std::int32_t FillColumns(LevelReader& levels, std::int32_t pairs, std::int32_t levelsPerPair, std::int32_t middle,
                         FullWave style, DigestColumns& columns) noexcept {
  const double factor = style == FullWave::FromBottom ? 2.0 : 1.0;
  for (std::int32_t i = 0; i < pairs; ++i) {
    std::int64_t sum = 0;
    if (!levels.Sum(levelsPerPair, sum)) return i;
    columns[static_cast<std::size_t>(i)] = ScaledHeight(factor * static_cast<double>(sum / levelsPerPair), middle);
  }
  return pairs;
}

// The height of a column; what lies behind the last filled entry counts as equal to it, so that nothing of an earlier
// drawing shows.
std::int32_t ColumnHeight(const DigestColumns& columns, std::int32_t filled, std::int32_t x) noexcept {
  if (filled == 0) return 0;
  const auto entry = [&](std::int32_t i) -> std::int64_t {
    return columns[static_cast<std::size_t>(std::min(i, filled - 1))];
  };
  const std::int64_t height = x % 2 == 0 ? entry(x / 2) : (entry(x / 2) + entry(x / 2 + 1)) / 2;
  return static_cast<std::int32_t>(height);
}

}  // namespace

std::int32_t LevelsPerSecond(std::int32_t sampleRate, std::int32_t samplesPerLevel) noexcept {
  return samplesPerLevel == 0 ? kBlocksPerSecond : sampleRate / samplesPerLevel;
}

void DrawHalfWave(platform::FileStream& digest, const WaveArea& area, std::int32_t levelsPerColumn,
                  std::int32_t levelsPerSecond) noexcept {
  if (!CanDraw(area, levelsPerColumn)) return;
  LevelReader levels(digest, HalfWaveStart(area.startMs, levelsPerSecond));
  const std::int32_t bottom = area.height - 1;
  platform::DrawLine(area.dc, 0, bottom, area.width, bottom);
  for (std::int32_t x = 0; x < area.width; ++x) {
    std::int64_t sum = 0;
    if (!levels.Sum(levelsPerColumn, sum)) {
      const platform::RedPen pen(area.dc);
      platform::DrawLine(area.dc, x, 0, x, bottom);
      return;
    }
    const std::int32_t height = ScaledHeight(static_cast<double>(sum / levelsPerColumn), area.height);
    if (height != 0) platform::DrawLine(area.dc, x, area.height - height, x, bottom);
  }
}

void DrawDigestWave(platform::FileStream& digest, const WaveArea& area, std::int32_t levelsPerPair, FullWave style,
                    DigestColumns& columns) noexcept {
  if (!CanDraw(area, levelsPerPair)) return;
  const std::int32_t width = std::min(area.width, kMostColumns);
  const std::int32_t middle = area.height / 2;
  LevelReader levels(digest, static_cast<std::uint32_t>(area.startMs) / kBlockMs);
  if (style == FullWave::Centred) platform::DrawLine(area.dc, 0, middle, width, middle);
  const std::int32_t filled = FillColumns(levels, width / 2, levelsPerPair, middle, style, columns);
  const bool endedEarly = filled < width / 2;
  const std::int32_t drawn = endedEarly ? 2 * filled : width;
  for (std::int32_t x = 0; x < drawn; ++x) {
    const std::int32_t height = ColumnHeight(columns, filled, x);
    if (height == 0) continue;
    if (style == FullWave::Centred) {
      platform::DrawLine(area.dc, x, middle - height, x, core::HoldToInt32(std::int64_t{middle} + height + 1));
    } else {
      // Bars before an early end are one pixel taller; hosts have always shown them so.
      platform::DrawLine(area.dc, x, 2 * middle - height - (endedEarly ? 1 : 0), x, 2 * middle);
    }
  }
}

void DrawOverview(VcDc dc, std::int32_t height, std::span<const std::uint32_t, kOverviewColumns> levels) noexcept {
  constexpr std::int32_t kColumns = static_cast<std::int32_t>(kOverviewColumns);
  if (height < 1) return;
  const std::int32_t middle = height / 2;
  for (std::int32_t x = 1; x <= kColumns; ++x) {
    const std::int32_t reach = OverviewHeight(levels[static_cast<std::size_t>(x - 1)], middle);
    platform::DrawLine(dc, x, core::HoldToInt32(std::int64_t{middle} + reach), x, middle - reach);
  }
  platform::DrawLine(dc, 0, middle, kColumns, middle);
}

}  // namespace tavimo::digest
