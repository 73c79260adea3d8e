// The host kit's audio: choosing devices, and serving those that the host serves itself. Playing a sound is
// common/host_kit_playing.cpp.
#include <cstring>
#include <string>

#include "platform/common/audio_choice.h"
#include "platform/common/audio_devices.h"
#include "platform/common/guarded.h"
#include "platform/linux/pulse_connection.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;
using platform::AudioDirection;

std::string DeviceLines(AudioDirection direction) {
  const auto connection = platform::PulseConnection::Open();
  if (!connection) return "";
  std::string lines = "default\n";
  for (const platform::PulseDevice& device : connection->ListDevices(direction)) lines += device.name + '\n';
  return lines;
}

}  // namespace

extern "C" {

int tvUseWaveInput(const char* device) VC_NOEXCEPT {
  return platform::ChooseDevice(AudioDirection::Input, device) ? 0 : -1;
}

int tvUseWaveOutput(const char* device) VC_NOEXCEPT {
  return platform::ChooseDevice(AudioDirection::Output, device) ? 0 : -1;
}

int tvFeedWaveInput(const void* bytes, int count) VC_NOEXCEPT {
  if (!bytes || count < 0) return -1;
  int taken = -1;
  platform::TheAudioDevices().inputs.ForEach([&](platform::InputDevice& device) {
    if (!device.source->IsFedByHost() || taken > 0) return;
    taken =
        static_cast<int>(device.queue.Fill({static_cast<const std::uint8_t*>(bytes), static_cast<std::size_t>(count)}));
  });
  return taken;
}

int tvAdvanceWaveOutput(uint32_t bytes) VC_NOEXCEPT {
  bool isOpen = false;
  platform::TheAudioDevices().outputs.ForEach(
      [&](platform::OutputSink& sink) { isOpen = sink.AdvanceByHost(bytes) || isOpen; });
  return isOpen ? 0 : -1;
}

int tvListDevices(int input, char* names_utf8, int size) VC_NOEXCEPT {
  if (!names_utf8 || size < 1) return -1;
  names_utf8[0] = 0;
  return platform::Guarded(-1, [&] {
    const std::string lines = DeviceLines(input != 0 ? AudioDirection::Input : AudioDirection::Output);
    if (lines.size() >= static_cast<std::size_t>(size)) return -1;
    std::memcpy(names_utf8, lines.c_str(), lines.size() + 1);
    return static_cast<int>(lines.size()) + 1;
  });
}

}  // extern "C"
