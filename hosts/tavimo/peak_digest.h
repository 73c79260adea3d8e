// The host's own summary of a recording: the loudest sample of every 40 ms, in the digest's file format.
//
// The engine's digest takes the last sample of each 40 ms. That sample often lies near a zero crossing, so that the
// middle of a word looks silent and a cut falls into it; the loudest sample shows sound wherever there is sound.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "progress_bar.h"
#include "wave_header.h"

namespace tavimo::host {

// One level, 0 to 128, per 40 ms. A Refusal when the sound cannot be read, Cancelled after Ctrl-C.
// REQUIRES: header.problem is empty.
[[nodiscard]] std::vector<std::uint8_t> PeakLevels(const std::filesystem::path& recording, const WaveHeader& header,
                                                   ProgressBar& progress);

}  // namespace tavimo::host
