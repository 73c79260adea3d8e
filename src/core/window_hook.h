// Standing in front of a host window: the engine's procedure receives the window's messages first and passes on what it
// does not take. Two procedures of the engine may stand in front of one window, in either order.
#pragma once

#include "platform/windows.h"

namespace tavimo::core {

// One procedure of the engine, the window it stands in front of, and what stood there before.
struct WindowHook {
  platform::WindowProc procedure;
  VcWindow& window;
  platform::WindowProc& hostProc;
};

// Puts hook.procedure in front of window. The window that had it is given back what stood there, also from under the
// other hook; else its messages would go to the new window's host. The same window again, or one that does not exist,
// changes nothing: a procedure that is saved as its own host calls itself for ever.
void PutInFront(WindowHook hook, WindowHook other, VcWindow window) noexcept;

}  // namespace tavimo::core
