// Implements threads.h over the system's threads.
#include "platform/threads.h"

#include "platform/win32/system.h"

namespace tavimo::platform {

namespace {

using Entry = void (*)() noexcept;

// The thread holds the library it runs in, and gives it up with its own end: a host may unload it meanwhile.
DWORD WINAPI Run(void* entry) {
  reinterpret_cast<Entry>(entry)();
  HMODULE library = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&Run), &library);
  FreeLibraryAndExitThread(library, 0);
}

}  // namespace

bool StartThread(void (*entry)() noexcept) noexcept {
  HMODULE library = nullptr;
  if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&Run), &library)) {
    return false;
  }
  HANDLE thread = CreateThread(nullptr, 0, &Run, reinterpret_cast<void*>(entry), 0, nullptr);
  if (thread != nullptr) {
    CloseHandle(thread);
  } else {
    FreeLibrary(library);
  }
  return thread != nullptr;
}

// No signals here.
void WithSignalsBlocked(void (*action)(void* user), void* user) { action(user); }

}  // namespace tavimo::platform
