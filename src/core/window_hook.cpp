#include "core/window_hook.h"

namespace tavimo::core {

namespace {

void TakeAway(const WindowHook& hook, WindowHook& other) noexcept {
  if (platform::GetWindowProc(hook.window) == hook.procedure) {
    platform::SetWindowProc(hook.window, hook.hostProc);
  } else if (other.window == hook.window && other.hostProc == hook.procedure) {
    other.hostProc = hook.hostProc;
  }
}

}  // namespace

void PutInFront(WindowHook hook, WindowHook other, VcWindow window) noexcept {
  if (window == hook.window || !platform::WindowExists(window)) return;
  if (platform::WindowExists(hook.window)) TakeAway(hook, other);
  hook.window = window;
  hook.hostProc = platform::GetWindowProc(window);
  platform::SetWindowProc(window, hook.procedure);
}

}  // namespace tavimo::core
