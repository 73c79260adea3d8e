// Everything about windows that this process keeps between calls, in one record: what a window system's server would
// keep. Reached by the Linux layer alone, through the one instance that TheDesktop gives.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/common/handle_table.h"
#include "platform/linux/message_queue.h"
#include "platform/linux/window_table.h"
#include "tavimo_host.h"

namespace tavimo::platform {

struct Desktop {
  WindowTable windows;
  MessageQueue messages;
  HandleTable<std::string, HandleKind::Drop> drops;           // the first path of each: nobody asks for the others
  std::array<std::uint32_t, kWindowKindCount> classStyles{};  // all windows of a kind are of one class
  std::array<bool, 256> keysDown{};
  TvMessageBoxHandler messageBoxHandler = nullptr;  // null: standard error
  void* messageBoxUser = nullptr;
  TvBeepHandler beepHandler = nullptr;  // null: the terminal's bell
  void* beepUser = nullptr;
};

Desktop& TheDesktop() noexcept;

// What a window does with a message that the host's procedure does not handle.
std::intptr_t VC_CALL DefaultWindowProc(VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                                        std::intptr_t lparam) noexcept;

// See tvDispatchMessages. What arrives while messages are dispatched waits for the next call: a procedure that posts to
// its own window must not keep the host in here for ever.
int DispatchMessages(int timeoutMs) noexcept;

}  // namespace tavimo::platform
