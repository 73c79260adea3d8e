// Implements host_channel.h with message-only windows of a class that every process has.
#include "platform/win32/host_channel.h"

#include <array>
#include <cwchar>
#include <iterator>

namespace tavimo::platform {

namespace {

constexpr const wchar_t* kClass = L"STATIC";
constexpr std::array kNames{L"kit", L"input", L"output"};

struct Title {
  explicit Title(ChannelEnd end) noexcept {
    std::swprintf(text, std::size(text), L"tavimo %ls %u", kNames[static_cast<std::size_t>(end)],
                  static_cast<unsigned>(GetCurrentProcessId()));
  }
  wchar_t text[40];
};

}  // namespace

ChannelWindow::ChannelWindow(ChannelEnd end, Receiver receiver, void* user) noexcept
    : receiver_(receiver),
      user_(user),
      window_(CreateWindowExW(0, kClass, Title(end).text, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)) {
  if (window_ == nullptr) return;
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Receive));
}

ChannelWindow::~ChannelWindow() {
  if (window_ != nullptr) DestroyWindow(window_);
}

LRESULT CALLBACK ChannelWindow::Receive(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  if (message < WM_APP) return DefWindowProcW(window, message, wparam, lparam);
  const auto* channel = reinterpret_cast<const ChannelWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return channel->receiver_(channel->user_, message, wparam, lparam);
}

HWND NextChannelWindow(ChannelEnd end, HWND previous) noexcept {
  HWND window = FindWindowExW(HWND_MESSAGE, previous, kClass, Title(end).text);
  // A window of that name may be another process's that borrowed our number.
  DWORD process = 0;
  while (window != nullptr && (GetWindowThreadProcessId(window, &process), process != GetCurrentProcessId())) {
    window = FindWindowExW(HWND_MESSAGE, window, kClass, Title(end).text);
  }
  return window;
}

}  // namespace tavimo::platform
