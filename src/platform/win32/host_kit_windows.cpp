// The host kit's windows and messages: the system's own, in the form that tavimo_host.h promises.
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "platform/common/guarded.h"
#include "platform/win32/system.h"
#include "platform/win32/wide_text.h"
#include "platform/windows.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;

constexpr const wchar_t* kPlainClass = L"tavimo host window";
constexpr const wchar_t* kKindProcedure = L"tavimo kind's procedure";
constexpr UINT kLastWaiting = WM_APP + 0x100;  // marks the end of what waits

// The kind's own procedure, where a host's stands in front of it.
WNDPROC KindProcedure(HWND window) { return reinterpret_cast<WNDPROC>(GetPropW(window, kKindProcedure)); }

// A drop that nobody takes is released by whom it reaches last.
LRESULT CALLBACK PlainProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_DROPFILES) DragFinish(reinterpret_cast<HDROP>(wparam));
  return DefWindowProcW(window, message, wparam, lparam);
}

const wchar_t* ClassOf(int kind) {
  static const ATOM plainClass = [] {
    WNDCLASSW plain{};
    plain.lpfnWndProc = &PlainProcedure;
    plain.hInstance = GetModuleHandleW(nullptr);
    plain.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    plain.lpszClassName = kPlainClass;
    return RegisterClassW(&plain);
  }();
  static const bool isBarKnown = [] {
    const INITCOMMONCONTROLSEX bars{sizeof bars, ICC_PROGRESS_CLASS};
    return InitCommonControlsEx(&bars) != 0;
  }();
  switch (kind) {
    case TV_WINDOW:
      return plainClass == 0 ? nullptr : kPlainClass;
    case TV_LIST_BOX:
      return L"LISTBOX";
    case TV_PROGRESS_BAR:
      return isBarKnown ? PROGRESS_CLASSW : nullptr;
    default:
      return nullptr;
  }
}

DWORD StyleOf(int kind) {
  return kind == TV_WINDOW ? WS_OVERLAPPEDWINDOW : kind == TV_LIST_BOX ? WS_POPUP | LBS_NOINTEGRALHEIGHT : WS_POPUP;
}

// A window is a plain one of the narrow kind from the moment a host's procedure is in front: texts in messages are GBK.
void PutInFront(HWND window, TvWindowProc proc) {
  const auto previous = SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(proc));
  SetPropW(window, kKindProcedure, reinterpret_cast<HANDLE>(previous));
}

int DispatchUpTo(UINT endMark) {
  int dispatched = 0;
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.hwnd == nullptr && message.message == endMark) break;
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));  // for the host's own loop
      break;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
    ++dispatched;
  }
  return dispatched;
}

// The record that the system drops on a window: the names behind it, each with a zero, one more at the end.
HDROP MakeDrop(const std::vector<std::wstring>& paths) {
  std::wstring names;
  for (const std::wstring& path : paths) names.append(path).push_back(L'\0');
  names.push_back(L'\0');
  // Laid out as DROPFILES: offset of the names, a point, two truth values.
  const std::array<DWORD, 5> header{sizeof header, 0, 0, 0, TRUE};
  HGLOBAL drop = GlobalAlloc(GHND, sizeof header + names.size() * sizeof(wchar_t));
  auto* bytes = drop == nullptr ? nullptr : static_cast<char*>(GlobalLock(drop));
  if (bytes == nullptr) return nullptr;
  std::memcpy(bytes, header.data(), sizeof header);
  std::memcpy(bytes + sizeof header, names.data(), names.size() * sizeof(wchar_t));
  GlobalUnlock(drop);
  return static_cast<HDROP>(drop);
}

}  // namespace

extern "C" {

VcWindow tvCreateWindow(int kind, const char* title_gbk, TvWindowProc proc) VC_NOEXCEPT {
  return platform::Guarded<VcWindow>(nullptr, [&]() -> VcWindow {
    const wchar_t* className = ClassOf(kind);
    if (className == nullptr) return nullptr;
    const std::wstring title = platform::ShownText(title_gbk == nullptr || kind != TV_WINDOW ? "" : title_gbk);
    HWND window = CreateWindowExW(0, className, title.c_str(), StyleOf(kind), 0, 0, 100, 100, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
    if (window != nullptr && proc != nullptr) PutInFront(window, proc);
    return window;
  });
}

// What may still come to the host's procedure on the way would name a window that is half gone.
void tvDestroyWindow(VcWindow window) VC_NOEXCEPT {
  if (!IsWindow(window)) return;
  if (WNDPROC kind = KindProcedure(window)) SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(kind));
  RemovePropW(window, kKindProcedure);
  DestroyWindow(window);
}

intptr_t tvDefaultProc(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam) VC_NOEXCEPT {
  if (!IsWindow(window)) return 0;
  if (WNDPROC kind = KindProcedure(window)) return CallWindowProcA(kind, window, message, wparam, lparam);
  return CallWindowProcA(reinterpret_cast<WNDPROC>(GetClassLongPtrA(window, GCLP_WNDPROC)), window, message, wparam,
                         lparam);
}

intptr_t tvSendMessage(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam) VC_NOEXCEPT {
  return platform::SendToWindow(window, message, wparam, lparam);
}

int tvPostMessage(VcWindow window, uint32_t message, uintptr_t wparam, intptr_t lparam) VC_NOEXCEPT {
  return platform::PostToWindow(window, message, wparam, lparam) ? 1 : 0;
}

// Messages that a procedure posts meanwhile stand behind the mark: the host is not kept in here for ever.
int tvDispatchMessages(int timeout_ms) VC_NOEXCEPT {
  const DWORD timeout = timeout_ms < 0 ? INFINITE : static_cast<DWORD>(timeout_ms);
  MsgWaitForMultipleObjectsEx(0, nullptr, timeout, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
  PostThreadMessageA(GetCurrentThreadId(), kLastWaiting, 0, 0);
  return DispatchUpTo(kLastWaiting);
}

uint32_t tvClassStyle(VcWindow window) VC_NOEXCEPT {
  return IsWindow(window) ? static_cast<uint32_t>(GetClassLongPtrA(window, GCL_STYLE)) : 0;
}

void tvSetKeyDown(int virtual_key, int down) VC_NOEXCEPT {
  constexpr BYTE kDown = 0x80;
  std::array<BYTE, 256> keys{};
  if (virtual_key < 0 || static_cast<std::size_t>(virtual_key) >= keys.size() || !GetKeyboardState(keys.data())) return;
  keys[static_cast<std::size_t>(virtual_key)] = down != 0 ? kDown : BYTE{0};
  SetKeyboardState(keys.data());
}

int tvDropFiles(VcWindow window, const char* const* paths_gbk, int count) VC_NOEXCEPT {
  if (!IsWindow(window) || paths_gbk == nullptr || count < 1) return -1;
  return platform::Guarded(-1, [&] {
    std::vector<std::wstring> paths;
    for (int i = 0; i < count; ++i) {
      if (paths_gbk[i] == nullptr || *paths_gbk[i] == '\0') return -1;
      paths.push_back(platform::ShownText(paths_gbk[i]));
    }
    HDROP drop = MakeDrop(paths);
    if (drop == nullptr) return -1;
    SendMessageA(window, WM_DROPFILES, reinterpret_cast<WPARAM>(drop), 0);
    return 0;
  });
}

}  // extern "C"
