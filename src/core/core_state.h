// The process-wide audio state: one current format, one tape, one recording format, one set of host windows. Exports
// read and change it on the user-interface thread; nothing else holds state of this kind.
#pragma once

#include <array>
#include <cstdint>

#include "core/current_wave_file.h"
#include "core/pcm_format.h"
#include "platform/windows.h"

namespace tavimo::core {

// The three integers and deviceFormat agree only after vcSetTapeFileFormat; whatever opens a tape or the capture device
// calls it first.
struct TapeFormat {
  std::int32_t sampleRate = 11025;
  std::int32_t bitsPerSample = 0;
  std::int32_t channels = 0;
  PcmFormat deviceFormat{kPcmFormatTag, 1, 22050, 22050, 1, 8};
  std::int32_t samplesPerLevel = 0;  // frames in one 40 ms level
};

struct HostWindows {
  VcWindow mainWindow = nullptr;
  VcWindow debugWindow = nullptr;
  VcWindow dropWindow = nullptr;
  VcWindow waveWindow = nullptr;
  VcWindow levelBar = nullptr;
  platform::WindowProc dropHostProc = nullptr;
  platform::WindowProc waveHostProc = nullptr;
};

inline constexpr int kDropBufferBytes = 298;

struct CoreState {
  PcmFormat currentFormat;  // of the wave file last examined or opened
  CurrentWaveFile currentWaveFile;
  TapeFormat tapeFormat;
  HostWindows hostWindows;
  std::array<char, kDropBufferBytes> dropBuffer{};  // path of the last dropped file
};

CoreState& State() noexcept;

// Back to the state at load; an open tape is closed as it is.
void ResetState() noexcept;

}  // namespace tavimo::core
