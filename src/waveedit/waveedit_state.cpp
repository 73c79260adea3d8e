#include "waveedit/waveedit_state.h"

namespace tavimo::waveedit {

namespace {
constinit WaveeditState waveeditState;
}  // namespace

WaveeditState& State() noexcept { return waveeditState; }

}  // namespace tavimo::waveedit
