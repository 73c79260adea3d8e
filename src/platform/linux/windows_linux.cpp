// Implements windows.h and desktop.h over the windows of this process. The host kit's functions are thin calls of these.
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/common/guarded.h"
#include "platform/common/never_destroyed.h"
#include "platform/linux/desktop.h"
#include "platform/text.h"
#include "platform/windows.h"

namespace tavimo::platform {

namespace {

// GBK to UTF-8 on one line of a terminal: what is no character becomes "?", a control character a blank, so that a file
// name can neither break the line nor steer the terminal.
std::string TerminalText(std::string_view gbk) {
  constexpr std::size_t kMaxUtf8Bytes = 4;
  std::string line;
  for (std::size_t i = 0; i < gbk.size();) {
    const std::size_t length = IsLeadByte(gbk[i]) && i + 1 < gbk.size() ? 2 : 1;
    const std::string_view character = gbk.substr(i, length);
    i += length;
    char utf8[kMaxUtf8Bytes + 1];
    if (static_cast<unsigned char>(character[0]) < 0x20 || character[0] == 0x7F) {
      line += ' ';
    } else if (Utf8FromGbk(character, utf8, sizeof utf8) < 0) {
      line += '?';
    } else {
      line += utf8;
    }
  }
  return line;
}

void WriteBoxToStandardError(const char* text, const char* caption) {
  std::string line = TerminalText(caption);
  if (!line.empty()) line += ": ";
  line += TerminalText(text);
  line += '\n';
  std::fputs(line.c_str(), stderr);
}

std::intptr_t HandleByKind(Window& window, std::uint32_t message, std::uintptr_t wparam,
                           std::intptr_t lparam) noexcept {
  switch (window.kind) {
    case WindowKind::ListBox:
      return window.listBox.Handle(message, wparam, lparam);
    case WindowKind::ProgressBar:
      return window.progressBar.Handle(message, wparam, lparam);
    case WindowKind::Plain:
      break;
  }
  return 0;
}

}  // namespace

Desktop& TheDesktop() noexcept { return NeverDestroyed<Desktop>(); }

std::intptr_t VC_CALL DefaultWindowProc(VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                                        std::intptr_t lparam) noexcept {
  Window* found = TheDesktop().windows.Find(window);
  return found ? HandleByKind(*found, message, wparam, lparam) : 0;
}

int DispatchMessages(int timeoutMs) noexcept {
  MessageQueue& messages = TheDesktop().messages;
  const std::size_t waiting = messages.WaitForFirst(timeoutMs);
  int dispatched = 0;
  for (Message message; static_cast<std::size_t>(dispatched) < waiting && messages.Pop(message); ++dispatched) {
    SendToWindow(message.window, message.number, message.wparam, message.lparam);
  }
  return dispatched;
}

std::intptr_t SendToWindow(VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                           std::intptr_t lparam) noexcept {
  Window* found = TheDesktop().windows.Find(window);
  if (!found) return 0;
  // The kind's own procedure would look the window up once more: a list is filled with a message for each line.
  if (found->procedure == &DefaultWindowProc) return HandleByKind(*found, message, wparam, lparam);
  return found->procedure(window, message, wparam, lparam);
}

void AddToListBox(VcWindow listBox, const ListLines& lines) noexcept {
  // The rule: a message for each line. A block says the same where the kind's own procedure alone would see them.
  Window* found = TheDesktop().windows.Find(listBox);
  if (found && found->procedure == &DefaultWindowProc && found->kind == WindowKind::ListBox) {
    return found->listBox.Append(lines);
  }
  for (const std::uint32_t start : lines.starts) {
    SendToWindow(listBox, kMessageAddLine, 0, reinterpret_cast<std::intptr_t>(lines.text + start));
  }
}

bool PostToWindow(VcWindow window, std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) noexcept {
  // A message for no window takes its place in the queue, as on the platform.
  if (window && !WindowExists(window)) return false;
  return TheDesktop().messages.Push({window, message, wparam, lparam});
}

void RemoveMessages(VcWindow window, std::uint32_t message) noexcept {
  TheDesktop().messages.RemoveIf([window, message](const Message& waiting) {
    return waiting.number == message && (window == nullptr || waiting.window == window);
  });
}

bool WindowExists(VcWindow window) noexcept { return TheDesktop().windows.Contains(window); }

WindowProc GetWindowProc(VcWindow window) noexcept {
  const Window* found = TheDesktop().windows.Find(window);
  return found ? found->procedure : nullptr;
}

void SetWindowProc(VcWindow window, WindowProc procedure) noexcept {
  Window* found = TheDesktop().windows.Find(window);
  if (found && procedure) found->procedure = procedure;
}

std::intptr_t CallProc(WindowProc procedure, VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                       std::intptr_t lparam) noexcept {
  return procedure ? procedure(window, message, wparam, lparam) : 0;
}

void ChangeClassStyle(VcWindow window, std::uint32_t setBits, std::uint32_t clearBits) noexcept {
  const Window* found = TheDesktop().windows.Find(window);
  if (!found) return;
  std::uint32_t& style = TheDesktop().classStyles[static_cast<std::size_t>(found->kind)];
  style = (style & ~clearBits) | setBits;
}

bool IsKeyDown(int virtualKey) noexcept {
  const auto& keys = TheDesktop().keysDown;
  return virtualKey >= 0 && static_cast<std::size_t>(virtualKey) < keys.size() &&
         keys[static_cast<std::size_t>(virtualKey)];
}

bool WindowTitleExists(const char* title) noexcept {
  if (!title || !*title) return false;
  return Guarded(false, [&] {
    const std::string folded = FoldTitle(title);
    return TheDesktop().windows.HasTitle(folded) || IsTitlePublished(folded);
  });
}

void ShowMessageBox(const char* text, const char* caption) noexcept {
  if (!text) text = "";
  if (!caption) caption = "";
  Desktop& desktop = TheDesktop();
  if (desktop.messageBoxHandler) {
    desktop.messageBoxHandler(text, caption, desktop.messageBoxUser);
    return;
  }
  Guarded(0, [&] {
    WriteBoxToStandardError(text, caption);
    return 0;
  });
}

void Beep() noexcept {
  const Desktop& desktop = TheDesktop();
  if (desktop.beepHandler) {
    desktop.beepHandler(desktop.beepUser);
  } else if (isatty(STDERR_FILENO)) {
    std::fputc('\a', stderr);  // the terminal's bell; in a log it would only be a stray byte
  }
}

void TakeFirstDroppedPath(std::uintptr_t drop, char* path, int size) noexcept {
  const std::unique_ptr<std::string> dropped = TheDesktop().drops.Remove(drop);
  if (!path || size < 1) return;
  const std::string_view text = dropped ? std::string_view(*dropped) : std::string_view();
  const std::size_t length = WholeCharacterBytes(text, static_cast<std::size_t>(size) - 1);
  if (length > 0) std::memcpy(path, text.data(), length);
  path[length] = 0;
}

}  // namespace tavimo::platform
