// Implements pulse_input.h.
#include "platform/linux/pulse_input.h"

#include <cstdint>
#include <utility>

namespace tavimo::platform {

std::unique_ptr<InputSource> PulseInput::Open(const std::string& device, const WaveFormat& format, BlockQueue& queue) {
  auto input = std::make_unique<PulseInput>(queue);
  const bool isOpen = input->stream_.Open(AudioDirection::Input, device, format, &OnSound, input.get());
  return isOpen ? std::move(input) : nullptr;
}

// What the server still keeps back, less than a fragment, would otherwise be the first sound after the next start.
void PulseInput::Stop() noexcept {
  stream_.SetFlow(PulseStream::Flow::Hold);
  stream_.Flush();
}

void PulseInput::OnSound(pa_stream* stream, std::size_t, void* user) noexcept {
  auto& self = *static_cast<PulseInput*>(user);
  const PulseLibrary& pulse = self.stream_.Pulse();
  const void* sound = nullptr;
  std::size_t byteCount = 0;
  while (pulse.stream_peek(stream, &sound, &byteCount) == 0 && byteCount > 0) {
    // Null stands for sound that the server has lost. What finds no block is lost too, as from any microphone.
    if (sound) self.queue_.Fill({static_cast<const std::uint8_t*>(sound), byteCount});
    pulse.stream_drop(stream);
  }
}

}  // namespace tavimo::platform
