#include "recording/recording_state.h"

namespace tavimo::recording {

namespace {
constinit RecordingState recordingState;
}  // namespace

RecordingState& State() noexcept { return recordingState; }

void ResetState() noexcept { recordingState = {}; }

}  // namespace tavimo::recording
