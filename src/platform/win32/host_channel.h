// How a host kit and the engine, which may lie in different modules of one process, find each other: by windows that
// nobody sees, named for what they are and for the process. Messages to them are calls; all of them stay in one process
// and on the user-interface thread, so that they may carry addresses.
//
//   window  made by                                 message             wParam      lParam   result
//   kit     the kit, while the host takes beeps     kChannelBeep        -           -        -
//   input   each input device of the choice "host"  kChannelFeed        byte count  address  bytes taken
//   output  each output device of that choice       kChannelAdvance     byte count  -        1
//
// Not for message boxes (the kit answers the system's own) nor for the choice of devices (the environment of the process).
#pragma once

#include <cstdint>

#include "platform/win32/system.h"

namespace tavimo::platform {

enum class ChannelEnd { Kit, Input, Output };

inline constexpr UINT kChannelBeep = WM_APP + 1;
inline constexpr UINT kChannelFeed = WM_APP + 2;
inline constexpr UINT kChannelAdvance = WM_APP + 3;

// Where the kit writes the host's choice of a device, and where it stands if the host makes none.
struct ChoiceVariables {
  const wchar_t* chosen;
  const wchar_t* initial;
};
inline constexpr ChoiceVariables kInputVariables{L"TAVIMO_CHOSEN_WAVE_INPUT", L"TAVIMO_WAVE_INPUT"};
inline constexpr ChoiceVariables kOutputVariables{L"TAVIMO_CHOSEN_WAVE_OUTPUT", L"TAVIMO_WAVE_OUTPUT"};

// One such window, which hands messages to a function for as long as it lives.
class ChannelWindow {
 public:
  using Receiver = LRESULT (*)(void* user, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

  ChannelWindow(ChannelEnd end, Receiver receiver, void* user) noexcept;
  ChannelWindow(const ChannelWindow&) = delete;
  ChannelWindow& operator=(const ChannelWindow&) = delete;
  ~ChannelWindow();

 private:
  static LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;

  Receiver receiver_;
  void* user_;
  HWND window_;
};

// The next window of an end after one given, null for the first; null when there is none left.
[[nodiscard]] HWND NextChannelWindow(ChannelEnd end, HWND previous) noexcept;

}  // namespace tavimo::platform
