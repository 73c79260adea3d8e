// Threads over POSIX.
#include "platform/threads.h"

#include <pthread.h>
#include <signal.h>

namespace tavimo::platform {

namespace {

using Entry = void (*)() noexcept;

void* Run(void* entry) {
  reinterpret_cast<Entry>(entry)();
  return nullptr;
}

}  // namespace

bool StartThread(void (*entry)() noexcept) noexcept {
  // The thread inherits a mask with every signal in it: a host's handlers run on the host's own threads.
  sigset_t everything;
  sigset_t previous;
  sigfillset(&everything);
  pthread_sigmask(SIG_SETMASK, &everything, &previous);
  pthread_t thread{};
  const bool isStarted = pthread_create(&thread, nullptr, Run, reinterpret_cast<void*>(entry)) == 0;
  pthread_sigmask(SIG_SETMASK, &previous, nullptr);
  if (isStarted) pthread_detach(thread);
  return isStarted;
}

}  // namespace tavimo::platform
