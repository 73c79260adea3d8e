// Implements windows.h over the system's windows. Messages go through the narrow functions, because hosts' controls take
// and give GBK bytes; titles and boxes through the wide ones.
#include "platform/windows.h"

#include <cstring>
#include <optional>
#include <string>

#include "platform/common/guarded.h"
#include "platform/text.h"
#include "platform/win32/host_channel.h"
#include "platform/win32/system.h"
#include "platform/win32/wide_text.h"

namespace tavimo::platform {

namespace {

// One file of a drop; empty when there is none.
std::wstring DroppedPath(HDROP drop, UINT index) {
  std::wstring path(DragQueryFileW(drop, index, nullptr, 0), L'\0');
  if (!path.empty()) DragQueryFileW(drop, index, path.data(), static_cast<UINT>(path.size()) + 1);
  return path;
}

}  // namespace

std::intptr_t SendToWindow(VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                           std::intptr_t lparam) noexcept {
  // Some values that are no windows stand for every window there is.
  return IsWindow(window) ? SendMessageA(window, message, wparam, lparam) : 0;
}

void AddToListBox(VcWindow listBox, const ListLines& lines) noexcept {
  for (const std::uint32_t start : lines.starts) {
    SendToWindow(listBox, kMessageAddLine, 0, reinterpret_cast<std::intptr_t>(lines.text + start));
  }
}

bool PostToWindow(VcWindow window, std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) noexcept {
  return (window == nullptr || IsWindow(window)) && PostMessageA(window, message, wparam, lparam);
}

void RemoveMessages(VcWindow window, std::uint32_t message) noexcept {
  MSG waiting;
  while (PeekMessageA(&waiting, window, message, message, PM_REMOVE)) {
    if (waiting.message != WM_QUIT) continue;
    // Given whatever is asked for; the host's loop has to see it.
    PostQuitMessage(static_cast<int>(waiting.wParam));
    return;
  }
}

bool WindowExists(VcWindow window) noexcept { return IsWindow(window) != 0; }

// May be a token of the system's in place of an address: CallProc knows both.
WindowProc GetWindowProc(VcWindow window) noexcept {
  return reinterpret_cast<WindowProc>(GetWindowLongPtrA(window, GWLP_WNDPROC));
}

void SetWindowProc(VcWindow window, WindowProc procedure) noexcept {
  if (procedure != nullptr) SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
}

std::intptr_t CallProc(WindowProc procedure, VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                       std::intptr_t lparam) noexcept {
  if (procedure == nullptr) return 0;
  return CallWindowProcA(reinterpret_cast<WNDPROC>(procedure), window, message, wparam, lparam);
}

void ChangeClassStyle(VcWindow window, std::uint32_t setBits, std::uint32_t clearBits) noexcept {
  if (!WindowExists(window)) return;
  const auto style = static_cast<std::uint32_t>(GetClassLongPtrA(window, GCL_STYLE));
  SetClassLongPtrA(window, GCL_STYLE, static_cast<LONG_PTR>((style & ~clearBits) | setBits));
}

bool IsKeyDown(int virtualKey) noexcept { return GetKeyState(virtualKey) < 0; }

bool WindowTitleExists(const char* title) noexcept {
  if (title == nullptr || *title == '\0') return false;
  return Guarded(false, [&] {
    const std::optional<std::wstring> wide = WideFromGbk(title);
    return wide && FindWindowW(nullptr, wide->c_str()) != nullptr;
  });
}

void ShowMessageBox(const char* text, const char* caption) noexcept {
  Guarded(0, [&] {
    const std::wstring wideText = ShownText(text == nullptr ? "" : text);
    const std::wstring wideCaption = ShownText(caption == nullptr ? "" : caption);
    return MessageBoxW(nullptr, wideText.c_str(), wideCaption.c_str(), MB_OK);
  });
}

void Beep() noexcept {
  if (HWND kit = NextChannelWindow(ChannelEnd::Kit, nullptr)) {
    SendMessageW(kit, kChannelBeep, 0, 0);
  } else {
    MessageBeep(MB_OK);
  }
}

void TakeFirstDroppedPath(std::uintptr_t drop, char* path, int size) noexcept {
  HDROP dropped = reinterpret_cast<HDROP>(drop);
  if (path != nullptr && size > 0) {
    *path = '\0';
    Guarded(0, [&] {
      // A path that no engine path can spell could not be opened.
      const std::string gbk = GbkFromWide(DroppedPath(dropped, 0)).value_or("");
      const std::size_t length = WholeCharacterBytes(gbk, static_cast<std::size_t>(size) - 1);
      std::memcpy(path, gbk.c_str(), length);
      path[length] = '\0';
      return 0;
    });
  }
  DragFinish(dropped);
}

}  // namespace tavimo::platform
