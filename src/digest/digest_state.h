// The process-wide records of digests and waveforms.
#pragma once

#include "digest/digest_job.h"
#include "digest/digest_summary.h"
#include "digest/digest_wave.h"
#include "digest/voice_overview.h"
#include "platform/files.h"

namespace tavimo::digest {

struct DigestState {
  DigestJob digestJob;
  platform::FileStream currentDigest;  // the one digest open for drawing and segmentation
  DigestColumns digestColumns{};
  OverviewTable sourceVisualTable{};  // nothing fills it: the recording's overview shows its middle line alone
  VoiceVisualTable voiceVisualTable{};
  // One for each thread that can summarise, so that a host that calls both makers at once gets two whole digests. They
  // stand apart, so that the library's file holds no empty pieces.
  SummaryWorkspace& workerWorkspace;
  SummaryWorkspace& hostWorkspace;
};

DigestState& State() noexcept;

// Back to the state at load. REQUIRES: no worker runs.
void ResetState() noexcept;

}  // namespace tavimo::digest
