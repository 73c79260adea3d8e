// Host windows: messages to them, procedures in front of them, their titles, the modal message box and the beep.
//
// Callers guarantee: the user-interface thread; texts are zero-terminated GBK.
// A back end checks: every handle (null and destroyed ones receive nothing), null texts.
#pragma once

#include <cstdint>

#include "platform/list_lines.h"
#include "tavimo.h"

namespace tavimo::platform {

// Message numbers and keys: the platform's own.
inline constexpr std::uint32_t kMessageKeyUp = 0x101;
inline constexpr std::uint32_t kMessageDropFiles = 0x233;
inline constexpr std::uint32_t kMessageWaveInData = 0x3C0;
inline constexpr std::uint32_t kMessageAddLine = 0x180;  // to a list box
inline constexpr std::uint32_t kMessageSetBarRange = 0x401;
inline constexpr std::uint32_t kMessageSetBarPosition = 0x402;
inline constexpr std::uintptr_t kKeyF4 = 0x73;
inline constexpr std::uintptr_t kKeyF11 = 0x7A;
inline constexpr int kKeyControl = 0x11;
inline constexpr std::uint32_t kClassStyleNoClose = 0x200;

using WindowProc = std::intptr_t(VC_CALL*)(VcWindow, std::uint32_t, std::uintptr_t, std::intptr_t);

// Delivers at once and returns what the window's procedure returns; 0 for no window.
std::intptr_t SendToWindow(VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                           std::intptr_t lparam) noexcept;

// Adds the lines to a list box, as a message for each does. Where nobody stands in front of the list box to see the
// messages, they may be added without.
void AddToListBox(VcWindow listBox, const ListLines& lines) noexcept;

// Queues behind what waits; false when the window does not exist or the queue is full.
bool PostToWindow(VcWindow window, std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) noexcept;

// Takes the waiting messages of one number out of the queue: those of a window, or for null those of every window and
// of none.
void RemoveMessages(VcWindow window, std::uint32_t message) noexcept;

[[nodiscard]] bool WindowExists(VcWindow window) noexcept;

// The procedure a window has now; null for no window.
[[nodiscard]] WindowProc GetWindowProc(VcWindow window) noexcept;
void SetWindowProc(VcWindow window, WindowProc procedure) noexcept;

// Calls a procedure that GetWindowProc gave; 0 for null.
std::intptr_t CallProc(WindowProc procedure, VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                       std::intptr_t lparam) noexcept;

// Sets or clears bits in the style of the window's class.
void ChangeClassStyle(VcWindow window, std::uint32_t setBits, std::uint32_t clearBits) noexcept;

// Whether a virtual key was down at the last input message read.
[[nodiscard]] bool IsKeyDown(int virtualKey) noexcept;

// Whether a top-level window of any process has exactly this title, without regard to case.
[[nodiscard]] bool WindowTitleExists(const char* title) noexcept;

// A modal box with an OK button and no owner; waits for the user.
void ShowMessageBox(const char* text, const char* caption) noexcept;

// The short sound for work that is done; does not wait for its end.
void Beep() noexcept;

// Copies the first path of a drop (the wParam of the message), cut to size - 1 bytes before a character that does not
// fit, with the terminating zero; an empty string for no drop. Then releases the drop.
void TakeFirstDroppedPath(std::uintptr_t drop, char* path, int size) noexcept;

}  // namespace tavimo::platform
