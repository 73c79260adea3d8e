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

// A thread inherits a mask with every signal in it: a host's handlers run on the host's own threads.
class SignalsBlocked {
 public:
  SignalsBlocked() noexcept {
    sigset_t everything;
    sigfillset(&everything);
    pthread_sigmask(SIG_SETMASK, &everything, &previous_);
  }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }

 private:
  sigset_t previous_;
};

}  // namespace

bool StartThread(void (*entry)() noexcept) noexcept {
  const SignalsBlocked blocked;
  pthread_t thread{};
  const bool isStarted = pthread_create(&thread, nullptr, Run, reinterpret_cast<void*>(entry)) == 0;
  if (isStarted) pthread_detach(thread);
  return isStarted;
}

void WithSignalsBlocked(void (*action)(void* user), void* user) {
  const SignalsBlocked blocked;
  action(user);
}

}  // namespace tavimo::platform
