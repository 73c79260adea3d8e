// Plays a stretch of a wave file through the host kit, once or several times. The engine plays nothing itself.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "wave_header.h"

namespace tavimo::host {

struct PlayRequest {
  std::filesystem::path file;
  WaveHeader header;
  std::int64_t startMs = 0;
  std::int64_t endMs = 0;
  std::string device;  // as tvUseWaveOutput takes it; empty: the one that is chosen already
  int times = 1;
  std::int64_t gapMs = 0;  // of silence between two times
};

// Returns when all has been heard. A Refusal when there is nothing to play or to play it on, Cancelled after Ctrl-C.
void Play(const PlayRequest& request);

}  // namespace tavimo::host
