// What the compiler's checked stacks call. Its own run-time library for it asks the system's cryptography for a number, for
// each program and DLL anew and while the DLL is being loaded, when nothing else may be loaded: that takes ten times as long
// as all the rest of the loading. Here the number is made of what differs from start to start: clocks, and addresses that the
// system chooses.
#include <cstdint>
#include <initializer_list>

#include "platform/win32/system.h"

extern "C" {

std::uintptr_t __stack_chk_guard = 0;

// Nothing of the process can be trusted any more, its heap and its handlers included.
[[noreturn]] void __stack_chk_fail() {
  constexpr UINT kStackOverrun = 0xC0000409;
  OutputDebugStringA("*** stack smashing detected ***\n");
  TerminateProcess(GetCurrentProcess(), kStackOverrun);
  for (;;) {
  }
}

// Before every other initialisation, so that no function sees the number change while it runs.
__attribute__((constructor(101), no_stack_protector)) static void MakeStackGuard() {
  FILETIME time;
  LARGE_INTEGER counter;
  GetSystemTimeAsFileTime(&time);
  QueryPerformanceCounter(&counter);
  std::uint64_t mixed = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
  for (const std::uint64_t part : {static_cast<std::uint64_t>(counter.QuadPart), std::uint64_t{GetCurrentProcessId()},
                                   std::uint64_t{GetCurrentThreadId()}, std::uint64_t{GetTickCount64()},
                                   std::uint64_t{reinterpret_cast<std::uintptr_t>(&time)},
                                   std::uint64_t{reinterpret_cast<std::uintptr_t>(&__stack_chk_guard)}}) {
    mixed = (mixed ^ part) * 0x9E3779B97F4A7C15;  // spreads each bit upward; the shift brings the upper ones down
    mixed ^= mixed >> 29;
  }
  __stack_chk_guard = static_cast<std::uintptr_t>(mixed);
}

}  // extern "C"
