// The engine as at load, for tests that share one process.
#pragma once

#include "core/core_state.h"
#include "digest/digest_state.h"
#include "exercises/exercises_state.h"
#include "pages/pages_state.h"
#include "recording/recording_state.h"
#include "sentences/sentences_state.h"

namespace tavimo::tests {

// REQUIRES: no digest worker runs.
inline void ResetEveryRoom() {
  core::ResetState();
  recording::ResetState();
  digest::ResetState();
  sentences::ResetState();
  exercises::ResetState();
  pages::ResetState();
}

}  // namespace tavimo::tests
