// The host kit's audio: choosing devices, serving those that the host serves itself, and playing a sound. What a sound
// consists of is the host's business; the engine plays nothing.
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/audio_choice.h"
#include "platform/linux/audio_devices.h"
#include "platform/linux/guarded.h"
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

bool IsWithin16Bits(int value) { return value >= 0 && value <= 0xFFFF; }

// Closes the device of what plays.
void EndPlaying() { platform::CloseWaveOutput(std::exchange(platform::TheAudioDevices().playing, {}).device); }

bool StartPlaying(const platform::WaveFormat& format, std::vector<std::uint8_t> sound) {
  platform::AudioDevices& devices = platform::TheAudioDevices();
  platform::PlayingSound playing{0, static_cast<std::uint32_t>(sound.size()), platform::BytesPerSecond(format)};
  if (platform::OpenWaveOutput(playing.device, format) != platform::kAudioOk) return false;
  if (!devices.outputs.Find(playing.device)->Play(std::move(sound))) {
    platform::CloseWaveOutput(playing.device);
    return false;
  }
  EndPlaying();
  devices.playing = playing;
  return true;
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

int tvPlayWave(const void* bytes, int byte_count, int sample_rate, int bits_per_sample, int channels) VC_NOEXCEPT {
  if (!bytes || !IsWithin16Bits(bits_per_sample) || !IsWithin16Bits(channels)) return -1;
  const platform::WaveFormat format{1, static_cast<std::uint16_t>(channels), static_cast<std::uint32_t>(sample_rate),
                                    static_cast<std::uint16_t>(bits_per_sample)};
  if (!platform::IsDeviceFormat(format)) return -1;
  const int frameBytes = static_cast<int>(platform::BytesPerFrame(format));
  if (byte_count < frameBytes) return -1;
  return platform::Guarded(-1, [&] {
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    return StartPlaying(format, {first, first + byte_count / frameBytes * frameBytes}) ? 0 : -1;
  });
}

int tvPlayedMs(void) VC_NOEXCEPT {
  const platform::PlayingSound& playing = platform::TheAudioDevices().playing;
  std::uint32_t played = 0;
  if (!platform::GetPlayedBytes(playing.device, played) || played >= playing.byteCount) {
    EndPlaying();
    return -1;
  }
  return static_cast<int>(std::uint64_t{played} * 1000 / playing.bytesPerSecond);
}

void tvStopPlaying(void) VC_NOEXCEPT { EndPlaying(); }

}  // extern "C"
