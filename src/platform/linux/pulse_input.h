// A microphone of the sound server, or whatever else it records from. The server converts to the device's format.
#pragma once

#include <memory>
#include <string>

#include "platform/common/audio_ends.h"
#include "platform/common/block_queue.h"
#include "platform/linux/pulse_stream.h"

namespace tavimo::platform {

class PulseInput final : public InputSource {
 public:
  // Null when there is no server or no such device. May throw std::bad_alloc.
  static std::unique_ptr<InputSource> Open(const std::string& device, const WaveFormat& format, BlockQueue& queue);

  explicit PulseInput(BlockQueue& queue) noexcept : queue_(queue) {}
  bool Start() noexcept override { return stream_.SetFlow(PulseStream::Flow::Run); }
  void Stop() noexcept override;

 private:
  static void OnSound(pa_stream* stream, std::size_t byteCount, void* user) noexcept;

  BlockQueue& queue_;
  PulseStream stream_;  // behind what its callback uses: it goes first
};

}  // namespace tavimo::platform
