// The door of recording.
#include "recording/recording_state.h"
#include "tavimo.h"

using namespace tavimo;

extern "C" {

void VC_CALL vcSetSilentParam(std::int32_t threshold, std::int32_t silence_ms) noexcept {
  constexpr std::int32_t kLevelMs = 40;
  recording::State().silenceThreshold = threshold;
  recording::State().silenceLength = silence_ms / kLevelMs;
}

}  // extern "C"
