// The host kit's handlers of message boxes and beeps. A box is the system's own, wherever in the process it comes from:
// it is answered the moment it appears, after its text was read. A beep comes as a message (host_channel.h).
#include <optional>
#include <string>

#include "platform/common/guarded.h"
#include "platform/win32/host_channel.h"
#include "platform/win32/system.h"
#include "platform/win32/wide_text.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;

struct HostHandlers {
  TvMessageBoxHandler messageBox = nullptr;
  void* messageBoxUser = nullptr;
  HHOOK hook = nullptr;  // while there is a handler of boxes
  TvBeepHandler beep = nullptr;
  void* beepUser = nullptr;
  std::optional<platform::ChannelWindow> channel;  // while there is one of beeps
};
HostHandlers handlers;

std::wstring TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

// GBK for the host; what it cannot hold becomes "?".
std::string GbkText(const std::wstring& wide) {
  std::string gbk;
  for (const wchar_t unit : wide) gbk += platform::GbkFromWide({&unit, 1}).value_or("?");
  return gbk;
}

bool IsMessageBox(HWND window) {
  constexpr int kTextItem = 0xFFFF;
  wchar_t className[8] = {};
  GetClassNameW(window, className, 8);
  return std::wstring(className) == L"#32770" && GetDlgItem(window, kTextItem) != nullptr;
}

void Answer(HWND box) {
  constexpr int kTextItem = 0xFFFF;
  const std::string text = GbkText(TextOf(GetDlgItem(box, kTextItem)));
  const std::string caption = GbkText(TextOf(box));
  EndDialog(box, IDOK);
  handlers.messageBox(text.c_str(), caption.c_str(), handlers.messageBoxUser);
}

LRESULT CALLBACK Watch(int code, WPARAM window, LPARAM more) {
  HWND activated = reinterpret_cast<HWND>(window);
  if (code == HCBT_ACTIVATE && handlers.messageBox != nullptr && IsMessageBox(activated)) {
    platform::Guarded(0, [&] {
      Answer(activated);
      return 0;
    });
  }
  return CallNextHookEx(nullptr, code, window, more);
}

LRESULT ReceiveBeep(void*, UINT message, WPARAM, LPARAM) noexcept {
  if (message == platform::kChannelBeep && handlers.beep != nullptr) handlers.beep(handlers.beepUser);
  return 0;
}

}  // namespace

extern "C" {

void tvSetMessageBoxHandler(TvMessageBoxHandler handler, void* user) VC_NOEXCEPT {
  handlers.messageBox = handler;
  handlers.messageBoxUser = user;
  if (handler != nullptr && handlers.hook == nullptr) {
    handlers.hook = SetWindowsHookExW(WH_CBT, &Watch, nullptr, GetCurrentThreadId());
  } else if (handler == nullptr && handlers.hook != nullptr) {
    UnhookWindowsHookEx(handlers.hook);
    handlers.hook = nullptr;
  }
}

void tvSetBeepHandler(TvBeepHandler handler, void* user) VC_NOEXCEPT {
  handlers.beep = handler;
  handlers.beepUser = user;
  if (handler == nullptr) {
    handlers.channel.reset();
  } else if (!handlers.channel) {
    handlers.channel.emplace(platform::ChannelEnd::Kit, &ReceiveBeep, nullptr);
  }
}

}  // extern "C"
