// One thing: process-wide objects that threads and windows may use until the very end of the process. A destructor that
// runs at exit would take them away under a worker thread.
#pragma once

#include <cstddef>
#include <new>

namespace tavimo::platform {

// The one object of type T, made at the first call without asking for memory.
template <class T>
T& NeverDestroyed() noexcept {
  alignas(T) static std::byte storage[sizeof(T)];
  static T& object = *new (storage) T;
  return object;
}

}  // namespace tavimo::platform
