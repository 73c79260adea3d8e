// The learner's voice in 600 levels: the recording "tmpwav\tmpmic.wav" reduced to a table that the overview draws.
// Showing the failures is the door's.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/wave_header.h"

namespace tavimo::digest {

inline constexpr std::uint32_t kOverviewColumns = 600;
using OverviewTable = std::array<std::uint32_t, kOverviewColumns>;

// Entries from 600 on hold what the division leaves over; they are not drawn.
using VoiceVisualTable = std::array<std::uint32_t, 650>;

// The room of the block samples are read into: one level takes at most 276 samples of 16 bits.
inline constexpr std::size_t kMostRunBytes = 552;

struct OverviewResult {
  bool opened = false;
  core::WaveFault fault = core::WaveFault::None;
  bool truncated = false;  // the recording is longer than what is shown
};

// Fills the table from at most the first 165,750 samples, taken as signed 16-bit whatever the format says. A recording
// of fewer than 600 samples clears it: an earlier voice must not be shown for a new one. On a failure, table is
// untouched.
[[nodiscard]] OverviewResult ReadVoiceOverview(const char* path, std::span<std::uint8_t> buffer,
                                               VoiceVisualTable& table) noexcept;

}  // namespace tavimo::digest
