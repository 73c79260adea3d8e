// The host kit's windows and messages: thin calls of the layer that the engine uses too.
#include <memory>
#include <string>
#include <utility>

#include "platform/common/guarded.h"
#include "platform/linux/desktop.h"
#include "platform/windows.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;

}  // namespace

extern "C" {

VcWindow tvCreateWindow(int kind, const char* title_gbk, TvWindowProc proc) VC_NOEXCEPT {
  static_assert(static_cast<int>(platform::WindowKind::ListBox) == TV_LIST_BOX);
  static_assert(static_cast<int>(platform::WindowKind::ProgressBar) == TV_PROGRESS_BAR);
  if (kind < 0 || kind >= platform::kWindowKindCount) return nullptr;
  return platform::Guarded<VcWindow>(nullptr, [&] {
    auto window = std::make_unique<platform::Window>(static_cast<platform::WindowKind>(kind), title_gbk, proc);
    return platform::TheDesktop().windows.Add(std::move(window));
  });
}

void tvDestroyWindow(VcWindow window) VC_NOEXCEPT {
  if (!window) return;  // null stands for messages without a window, which stay
  platform::Desktop& desktop = platform::TheDesktop();
  desktop.windows.Remove(window);
  desktop.messages.RemoveIf([window](const platform::Message& message) { return message.window == window; });
}

intptr_t tvDefaultProc(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam) VC_NOEXCEPT {
  return platform::DefaultWindowProc(window, message, wparam, lparam);
}

intptr_t tvSendMessage(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam) VC_NOEXCEPT {
  return platform::SendToWindow(window, message, wparam, lparam);
}

int tvPostMessage(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam) VC_NOEXCEPT {
  return platform::PostToWindow(window, message, wparam, lparam) ? 1 : 0;
}

int tvDispatchMessages(int timeout_ms) VC_NOEXCEPT { return platform::DispatchMessages(timeout_ms); }

uint32_t tvClassStyle(VcWindow window) VC_NOEXCEPT {
  const platform::Desktop& desktop = platform::TheDesktop();
  const platform::Window* found = desktop.windows.Find(window);
  return found ? desktop.classStyles[static_cast<std::size_t>(found->kind)] : 0;
}

void tvSetKeyDown(int virtual_key, int down) VC_NOEXCEPT {
  auto& keys = platform::TheDesktop().keysDown;
  if (virtual_key < 0 || static_cast<std::size_t>(virtual_key) >= keys.size()) return;
  keys[static_cast<std::size_t>(virtual_key)] = down != 0;
}

int tvDropFiles(VcWindow window, const char* const* paths_gbk, int count) VC_NOEXCEPT {
  if (!platform::WindowExists(window) || !paths_gbk || count < 1) return -1;
  for (int i = 0; i < count; ++i) {
    if (!paths_gbk[i] || !*paths_gbk[i]) return -1;
  }
  auto& drops = platform::TheDesktop().drops;
  const auto drop =
      platform::Guarded<std::uintptr_t>(0, [&] { return drops.Add(std::make_unique<std::string>(paths_gbk[0])); });
  if (drop == 0) return -1;
  platform::SendToWindow(window, TV_WM_DROPFILES, drop, 0);
  drops.Remove(drop);  // a window that does not take files leaves it
  return 0;
}

void tvSetMessageBoxHandler(TvMessageBoxHandler handler, void* user) VC_NOEXCEPT {
  platform::Desktop& desktop = platform::TheDesktop();
  desktop.messageBoxHandler = handler;
  desktop.messageBoxUser = user;
}

void tvSetBeepHandler(TvBeepHandler handler, void* user) VC_NOEXCEPT {
  platform::Desktop& desktop = platform::TheDesktop();
  desktop.beepHandler = handler;
  desktop.beepUser = user;
}

}  // extern "C"
