#include "recording/recording_state.h"

namespace tavimo::recording {

namespace {
constinit RecordingState recordingState;
}  // namespace

RecordingState& State() noexcept { return recordingState; }

void ResetState() noexcept {
  if (recordingState.captureRing.inputDevice != 0) {
    StopCapture(recordingState.captureRing);
    ReleaseCapture(recordingState.captureRing);
  }
  recordingState = {};
}

}  // namespace tavimo::recording
