// The process-wide records of recording.
#pragma once

#include <cstdint>

#include "recording/capture_ring.h"

namespace tavimo::recording {

struct RecordingState {
  CaptureRing captureRing;
  std::int32_t silenceThreshold = 10;  // the loudest level that still counts as silent
  std::int32_t silenceLength = 0;      // silent levels of 40 ms that end a sentence
};

RecordingState& State() noexcept;

// Back to the state at load; an open input device is closed.
void ResetState() noexcept;

}  // namespace tavimo::recording
