// One stream to or from a device of the sound server, over a connection of its own. Opened without sound: it flows only
// while it runs. What the sound is, its owner knows.
#pragma once

#include <memory>
#include <string>

#include "platform/common/audio_ends.h"
#include "platform/linux/pulse_connection.h"

namespace tavimo::platform {

class PulseStream {
 public:
  enum class Flow { Hold, Run };

  PulseStream() noexcept = default;
  PulseStream(const PulseStream&) = delete;
  PulseStream& operator=(const PulseStream&) = delete;
  ~PulseStream();

  // False when there is no server or no such device. onRequest, on the connection's thread and locked, has sound to
  // fetch or to bring; user is its last argument. REQUIRES: not open. May throw std::bad_alloc.
  [[nodiscard]] bool Open(AudioDirection direction, const std::string& device, const WaveFormat& format,
                          pa_stream_request_cb_t onRequest, void* user);

  // Where the sound flows; false when the server is gone. REQUIRES: open, not locked.
  bool SetFlow(Flow flow) noexcept;

  // Drops what is on its way between server and owner.
  void Flush() noexcept;

  // Brings the times of the stream up to date; null when the server is gone. REQUIRES: open, locked.
  [[nodiscard]] const pa_timing_info* Times() noexcept;

  [[nodiscard]] const PulseConnection& Connection() const noexcept { return *connection_; }
  [[nodiscard]] const PulseLibrary& Pulse() const noexcept { return connection_->Pulse(); }
  [[nodiscard]] pa_stream* Stream() const noexcept { return stream_; }
  [[nodiscard]] const pa_sample_spec& Samples() const noexcept { return samples_; }

 private:
  [[nodiscard]] bool Connect(AudioDirection direction, const char* device) noexcept;

  std::unique_ptr<PulseConnection> connection_;
  pa_stream* stream_ = nullptr;
  pa_sample_spec samples_{};
};

}  // namespace tavimo::platform
