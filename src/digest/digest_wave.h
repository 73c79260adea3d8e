// Drawing a digest as a waveform: a half wave on a base line, or a full wave centred or standing on the bottom. One
// vertical line for a pixel column at the most; nothing is erased.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "digest/voice_overview.h"
#include "platform/files.h"
#include "tavimo.h"

namespace tavimo::digest {

inline constexpr std::int32_t kMostColumns = 2048;
// Entry i is the height of columns 2i and 2i + 1.
using DigestColumns = std::array<std::int32_t, kMostColumns / 2>;

struct WaveArea {
  VcDc dc = nullptr;
  std::int32_t height = 0;  // pixels
  std::int32_t width = 0;   // pixels
  std::int32_t startMs = 0;
};

// Levels a second by a recording format; 25 when none is set.
[[nodiscard]] std::int32_t LevelsPerSecond(std::int32_t sampleRate, std::int32_t samplesPerLevel) noexcept;

void DrawHalfWave(platform::FileStream& digest, const WaveArea& area, std::int32_t levelsPerColumn,
                  std::int32_t levelsPerSecond) noexcept;

enum class FullWave { Centred, FromBottom };

void DrawDigestWave(platform::FileStream& digest, const WaveArea& area, std::int32_t levelsPerPair, FullWave style,
                    DigestColumns& columns) noexcept;

// The 600-column overview of levels held in memory: columns 1 to 600, then the middle line over them.
void DrawOverview(VcDc dc, std::int32_t height, std::span<const std::uint32_t, kOverviewColumns> levels) noexcept;

}  // namespace tavimo::digest
