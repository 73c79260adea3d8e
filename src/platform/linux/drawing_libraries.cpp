// Implements drawing_libraries.h.
#include "platform/linux/drawing_libraries.h"

#include <dlfcn.h>

#include <optional>

namespace tavimo::platform {

namespace {

std::optional<DrawingLibraries> Load() noexcept {
  // The painter needs the two others itself, and what it needs is looked through too.
  void* handle = dlopen("libcairo.so.2", RTLD_NOW | RTLD_LOCAL);
  if (!handle) return std::nullopt;
  DrawingLibraries libraries;
  bool isWhole = true;
#define TAVIMO_LOOK_UP(name)                                                         \
  libraries.name = reinterpret_cast<decltype(libraries.name)>(dlsym(handle, #name)); \
  isWhole = isWhole && libraries.name;
  TAVIMO_DRAWING_FUNCTIONS(TAVIMO_LOOK_UP)
#undef TAVIMO_LOOK_UP
  if (isWhole) return libraries;
  dlclose(handle);
  return std::nullopt;
}

}  // namespace

const DrawingLibraries* LoadedDrawing() noexcept {
  static const std::optional<DrawingLibraries> libraries = Load();
  return libraries ? &*libraries : nullptr;
}

}  // namespace tavimo::platform
