// Implements pulse_library.h.
#include "platform/linux/pulse_library.h"

#include <dlfcn.h>

#include <optional>

namespace tavimo::platform {

namespace {

std::optional<PulseLibrary> Load() noexcept {
  void* handle = dlopen("libpulse.so.0", RTLD_NOW | RTLD_LOCAL);
  if (!handle) return std::nullopt;
  PulseLibrary library;
  bool isWhole = true;
#define TAVIMO_LOOK_UP(name)                                                           \
  library.name = reinterpret_cast<decltype(library.name)>(dlsym(handle, "pa_" #name)); \
  isWhole = isWhole && library.name;
  TAVIMO_PULSE_FUNCTIONS(TAVIMO_LOOK_UP)
#undef TAVIMO_LOOK_UP
  if (isWhole) return library;
  dlclose(handle);
  return std::nullopt;
}

}  // namespace

const PulseLibrary* LoadedPulse() noexcept {
  static const std::optional<PulseLibrary> library = Load();
  return library ? &*library : nullptr;
}

}  // namespace tavimo::platform
