// The process-wide audio state: one current format, one tape, one recording format, one set of host windows. Exports
// read and change it on the user-interface thread; nothing else holds state of this kind.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/current_wave_file.h"
#include "core/pcm_format.h"
#include "core/tape_format.h"
#include "platform/audio.h"
#include "platform/windows.h"

namespace tavimo::core {

struct HostWindows {
  VcWindow mainWindow = nullptr;
  VcWindow debugWindow = nullptr;
  VcWindow dropWindow = nullptr;
  VcWindow waveWindow = nullptr;
  VcWindow levelBar = nullptr;
  platform::WindowProc dropHostProc = nullptr;  // what stood in dropWindow before the engine's procedure
  platform::WindowProc waveHostProc = nullptr;
};

inline constexpr int kDropBufferBytes = 298;
inline constexpr std::size_t kVoiceReadBytes = 1356;

struct CoreState {
  PcmFormat currentFormat;  // of the wave file last examined or opened
  CurrentWaveFile currentWaveFile;
  TapeFormat tapeFormat;
  HostWindows hostWindows;
  platform::WaveOutput outputDevice = 0;
  std::array<char, kDropBufferBytes> dropBuffer{};              // path of the last dropped file
  std::array<std::uint8_t, kVoiceReadBytes> voiceReadBuffer{};  // recorded samples on their way to the overview
};

CoreState& State() noexcept;

// Back to the state at load; an open tape is closed as it is, an open output device too.
void ResetState() noexcept;

}  // namespace tavimo::core
