// Implements window_table.h: the table behind a mutex, because a device's thread asks whether a window still exists.
#include "platform/linux/window_table.h"

#include <utility>

#include "platform/linux/desktop.h"

namespace tavimo::platform {

namespace {

std::uintptr_t ValueOf(VcWindow window) noexcept { return reinterpret_cast<std::uintptr_t>(window); }

}  // namespace

Window::Window(WindowKind ofKind, const char* title, WindowProc hostProcedure)
    : kind(ofKind),
      procedure(hostProcedure ? hostProcedure : &DefaultWindowProc),
      foldedTitle(title && ofKind == WindowKind::Plain ? FoldTitle(title) : std::string()) {
  if (!foldedTitle.empty()) publishedTitle.Publish(foldedTitle);
}

VcWindow WindowTable::Add(std::unique_ptr<Window> window) {
  const std::lock_guard lock(mutex_);
  return reinterpret_cast<VcWindow>(windows_.Add(std::move(window)));
}

bool WindowTable::Contains(VcWindow window) const noexcept {
  const std::lock_guard lock(mutex_);
  return windows_.Find(ValueOf(window)) != nullptr;
}

bool WindowTable::HasTitle(const std::string& foldedTitle) const {
  return windows_.AnyOf([&](const Window& window) { return window.foldedTitle == foldedTitle; });
}

std::unique_ptr<Window> WindowTable::Remove(VcWindow window) noexcept {
  const std::lock_guard lock(mutex_);
  return windows_.Remove(ValueOf(window));
}

}  // namespace tavimo::platform
