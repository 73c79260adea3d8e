// One thing: keeping exceptions, which can only mean that memory is short, inside the C interface.
#pragma once

#include <utility>

namespace tavimo::platform {

// The result of body, or onFailure when it throws.
template <class Result, class Body>
Result Guarded(Result onFailure, Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (...) {
    return onFailure;
  }
}

}  // namespace tavimo::platform
