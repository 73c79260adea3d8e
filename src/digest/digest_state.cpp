#include "digest/digest_state.h"

namespace tavimo::digest {

namespace {
constinit SummaryWorkspace workerWorkspace{};
constinit SummaryWorkspace hostWorkspace{};
constinit DigestState digestState{{}, {}, {}, {}, {}, workerWorkspace, hostWorkspace};
}  // namespace

DigestState& State() noexcept { return digestState; }

void ResetState() noexcept {
  digestState.digestJob.cancelRequested.store(0);
  digestState.digestJob.percentage.store(0);
  digestState.currentDigest.Close();
  digestState.digestColumns = {};
  digestState.voiceVisualTable = {};
}

}  // namespace tavimo::digest
