#include "core/core_state.h"

#include "core/output_device.h"

namespace tavimo::core {

namespace {
constinit CoreState coreState;
}  // namespace

CoreState& State() noexcept { return coreState; }

void ResetState() noexcept {
  CloseOutputDevice(coreState.outputDevice);
  coreState = CoreState{};
}

}  // namespace tavimo::core
