// The host kit plays a sound. What a sound consists of is the host's business; the engine plays nothing.
#include <utility>
#include <vector>

#include "platform/common/audio_devices.h"
#include "platform/common/guarded.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;

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
