#include "core/core_state.h"

namespace tavimo::core {

namespace {
constinit CoreState coreState;
}  // namespace

CoreState& State() noexcept { return coreState; }

void ResetState() noexcept { coreState = CoreState{}; }

}  // namespace tavimo::core
