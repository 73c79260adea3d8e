#include "core/output_device.h"

namespace tavimo::core {

bool OpenOutputDevice(platform::WaveOutput& device, const PcmFormat& format) noexcept {
  CloseOutputDevice(device);
  return platform::OpenWaveOutput(device, {format.formatTag, format.channels, format.sampleRate,
                                           format.bitsPerSample}) == platform::kAudioOk;
}

bool StopModeCloses(std::int32_t mode) noexcept {
  return (mode >= 1 && mode <= 3) || (mode >= 5 && mode <= 7) || (mode >= 11 && mode <= 13);
}

void CloseOutputDevice(platform::WaveOutput& device) noexcept {
  if (device == 0) return;
  platform::ResetWaveOutput(device);
  platform::CloseWaveOutput(device);
  device = 0;
}

std::int32_t PlayedBytesInBlock(platform::WaveOutput device, AskPosition how) noexcept {
  constexpr std::uint32_t kCaptureBlockBytes = 1256;
  if (how == AskPosition::WhilePlaying) platform::PauseWaveOutput(device);
  std::uint32_t played = 0;
  const bool answered = platform::GetPlayedBytes(device, played);
  if (how == AskPosition::WhilePlaying) platform::RestartWaveOutput(device);
  return answered ? static_cast<std::int32_t>(played % kCaptureBlockBytes) : 0;
}

}  // namespace tavimo::core
