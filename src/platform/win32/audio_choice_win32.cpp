// Implements the engine's half of audio_choice.h over the ends there are on Windows. What the host chooses reaches the
// engine, which may lie in a library of its own, as a variable of the process's environment (host_channel.h).
#include "platform/common/audio_choice.h"

#include <string>
#include <string_view>

#include "platform/common/file_input.h"
#include "platform/common/host_ends.h"
#include "platform/win32/host_channel.h"
#include "platform/win32/wave_devices.h"

namespace tavimo::platform {

namespace {

constexpr std::string_view kFilePrefix = "file:";

// The "host" devices, reached by the kit through a window.
class FedInput final : public InputSource {
 public:
  explicit FedInput(BlockQueue& queue) noexcept : queue_(queue), channel_(ChannelEnd::Input, &Receive, this) {}
  bool Start() noexcept override { return true; }
  void Stop() noexcept override {}

 private:
  static LRESULT Receive(void* user, UINT message, WPARAM byteCount, LPARAM bytes) noexcept {
    if (message != kChannelFeed) return 0;
    const auto* first = reinterpret_cast<const std::uint8_t*>(bytes);
    return static_cast<LRESULT>(static_cast<FedInput*>(user)->queue_.Fill({first, byteCount}));
  }

  BlockQueue& queue_;
  ChannelWindow channel_;
};

class MovedOutput final : public OutputSink {
 public:
  void Pause() noexcept override { output_.Pause(); }
  void Restart() noexcept override { output_.Restart(); }
  void Reset() noexcept override { output_.Reset(); }
  bool GetPlayedBytes(std::uint32_t& byteCount) noexcept override { return output_.GetPlayedBytes(byteCount); }
  bool Play(std::vector<std::uint8_t>) noexcept override { return true; }

 private:
  static LRESULT Receive(void* user, UINT message, WPARAM byteCount, LPARAM) noexcept {
    if (message != kChannelAdvance) return 0;
    return static_cast<HostOutput*>(user)->AdvanceByHost(static_cast<std::uint32_t>(byteCount)) ? 1 : 0;
  }

  HostOutput output_;
  ChannelWindow channel_{ChannelEnd::Output, &Receive, &output_};
};

}  // namespace

std::unique_ptr<InputSource> OpenChosenSource(const WaveFormat& format, BlockQueue& queue) {
  const std::string choice = ChosenDevice(kInputVariables);
  if (choice == "host") return std::make_unique<FedInput>(queue);
  if (choice.starts_with(kFilePrefix)) return FileInput::Open(choice.substr(kFilePrefix.size()), format, queue);
  return nullptr;
}

std::unique_ptr<OutputSink> OpenChosenSink(const WaveFormat& format) {
  const std::string choice = ChosenDevice(kOutputVariables);
  if (choice == "none") return nullptr;
  if (choice == "host") return std::make_unique<MovedOutput>();
  const std::optional<UINT> number = FindWaveDevice(AudioDirection::Output, choice);
  auto sink = number ? std::make_unique<WaveOutSink>(*number, format) : nullptr;
  return sink && sink->IsOpen() ? std::move(sink) : nullptr;
}

}  // namespace tavimo::platform
