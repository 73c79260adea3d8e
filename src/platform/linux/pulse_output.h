// A loudspeaker of the sound server, which knows how much of its sound has been heard.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/common/audio_ends.h"
#include "platform/linux/pulse_stream.h"

namespace tavimo::platform {

class PulseOutput final : public OutputSink {
 public:
  // Null when there is no server or no such device. May throw std::bad_alloc.
  static std::unique_ptr<OutputSink> Open(const std::string& device, const WaveFormat& format);

  void Pause() noexcept override { SetPaused(Paused::Yes); }
  void Restart() noexcept override { SetPaused(Paused::No); }
  void Reset() noexcept override;
  bool GetPlayedBytes(std::uint32_t& byteCount) noexcept override;
  bool Play(std::vector<std::uint8_t> sound) noexcept override;

 private:
  enum class Paused { No, Yes };

  static void OnRoom(pa_stream* stream, std::size_t byteCount, void* user) noexcept;
  void SetPaused(Paused paused) noexcept;
  void WriteMore() noexcept;

  // Touched with the stream locked.
  std::vector<std::uint8_t> sound_;
  std::size_t written_ = 0;
  std::int64_t heard_ = 0;
  Paused paused_ = Paused::No;
  PulseStream stream_;  // behind what its callback uses: it goes first
};

}  // namespace tavimo::platform
