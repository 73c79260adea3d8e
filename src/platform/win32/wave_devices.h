// The system's wave devices: which one a choice means, formats as the system takes them, and an output over one of them.
// Not for the devices that a host serves itself (common/host_ends.h).
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/common/audio_ends.h"
#include "platform/win32/host_channel.h"
#include "platform/win32/system.h"

namespace tavimo::platform {

// What is chosen at the moment, in UTF-8; "default" where neither the host nor the environment says anything.
[[nodiscard]] std::string ChosenDevice(const ChoiceVariables& variables);

// The number of the device with a name in UTF-8, WAVE_MAPPER for "default"; nothing when there is none.
[[nodiscard]] std::optional<UINT> FindWaveDevice(AudioDirection direction, const std::string& name);

// The names of the devices there are, in UTF-8.
[[nodiscard]] std::vector<std::string> WaveDeviceNames(AudioDirection direction);

[[nodiscard]] WAVEFORMATEX SystemFormat(const WaveFormat& format) noexcept;

// An output over one device; not open when the system refuses.
class WaveOutSink final : public OutputSink {
 public:
  WaveOutSink(UINT deviceNumber, const WaveFormat& format) noexcept;
  WaveOutSink(const WaveOutSink&) = delete;
  WaveOutSink& operator=(const WaveOutSink&) = delete;
  ~WaveOutSink() override;

  [[nodiscard]] bool IsOpen() const noexcept { return device_ != nullptr; }

  void Pause() noexcept override { waveOutPause(device_); }
  void Restart() noexcept override { waveOutRestart(device_); }
  void Reset() noexcept override;
  bool GetPlayedBytes(std::uint32_t& byteCount) noexcept override;
  bool Play(std::vector<std::uint8_t> sound) noexcept override;

 private:
  HWAVEOUT device_ = nullptr;
  std::vector<std::uint8_t> sound_;
  WAVEHDR block_{};
};

}  // namespace tavimo::platform
