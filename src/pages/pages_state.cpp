#include "pages/pages_state.h"

namespace tavimo::pages {

namespace {
constinit PagesState pagesState;
}  // namespace

PagesState& State() noexcept { return pagesState; }

void ResetState() noexcept { pagesState = PagesState{}; }

}  // namespace tavimo::pages
