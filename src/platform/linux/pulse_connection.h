// A connection to the sound server. Starts no server, and waits for one for a few seconds at most: a server that is
// stopped or gone must not hold a learner's window. Each device has a connection of its own, so that one opened after a
// server's death finds its successor; one thread serves them all, from the first on until the process ends.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/common/audio_ends.h"
#include "platform/linux/pulse_library.h"

namespace tavimo::platform {

struct PulseDevice {
  std::string name;         // what the server calls it, unique
  std::string description;  // what people call it, not always unique
};

class PulseConnection {
 public:
  // Null when the library is missing or no server answers. May throw std::bad_alloc.
  static std::unique_ptr<PulseConnection> Open();

  PulseConnection(const PulseLibrary& pulse, pa_threaded_mainloop* loop) noexcept : pulse_(pulse), loop_(loop) {}
  PulseConnection(const PulseConnection&) = delete;
  PulseConnection& operator=(const PulseConnection&) = delete;
  ~PulseConnection();

  // Keeps the thread out of its callbacks, which run with the lock held. Whatever the library keeps is touched under it,
  // so far as the library does not lock by itself; it is not recursive.
  class Lock {
   public:
    explicit Lock(const PulseConnection& connection) noexcept : connection_(connection) {
      connection_.pulse_.threaded_mainloop_lock(connection_.loop_);
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() { connection_.pulse_.threaded_mainloop_unlock(connection_.loop_); }

   private:
    const PulseConnection& connection_;
  };

  [[nodiscard]] const PulseLibrary& Pulse() const noexcept { return pulse_; }
  [[nodiscard]] pa_context* Context() const noexcept { return context_; }

  // Makes whoever waits look again; for callbacks.
  void Signal() const noexcept { pulse_.threaded_mainloop_signal(loop_, 0); }

  // Waits until the server has done what it was asked, and gives the operation (null: refused at once) up. False when it
  // has not. After one wait that was in vain no other is begun. REQUIRES: locked.
  bool Finish(pa_operation* operation) noexcept;

  // False when the stream did not come to life. REQUIRES: locked.
  bool WaitForStream(const pa_stream* stream) noexcept;

  // REQUIRES: not locked. May throw std::bad_alloc.
  std::vector<PulseDevice> ListDevices(AudioDirection direction);

 private:
  [[nodiscard]] bool Connect() noexcept;
  template <class Predicate>
  bool WaitUntil(Predicate isDone) noexcept;

  const PulseLibrary& pulse_;
  pa_threaded_mainloop* const loop_;
  pa_context* context_ = nullptr;
  bool isLate_ = false;
};

}  // namespace tavimo::platform
