// The far ends of the audio devices, one interface for each direction: where an input device's sound comes from, and
// where an output device's goes. Handles, formats and blocks are dealt with before a call gets here.
//
// Callers guarantee: the user-interface thread; a format that passed IsDeviceFormat; an input source that is started is
// stopped before it is started again; Play is called once. Every call answers within seconds, also when a server does not.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/audio.h"

namespace tavimo::platform {

enum class AudioDirection { Input, Output };

// Fills the BlockQueue it was made for.
class InputSource {
 public:
  virtual ~InputSource() = default;

  // False when no sound will come.
  virtual bool Start() noexcept = 0;

  // What was heard until now has reached the queue.
  virtual void Stop() noexcept = 0;

  // Whether the sound comes through tvFeedWaveInput.
  [[nodiscard]] virtual bool IsFedByHost() const noexcept { return false; }
};

class OutputSink {
 public:
  virtual ~OutputSink() = default;

  virtual void Pause() noexcept = 0;
  virtual void Restart() noexcept = 0;

  // Drops what plays; the position is 0 and the sink runs.
  virtual void Reset() noexcept = 0;

  // False when the sink can no longer tell.
  [[nodiscard]] virtual bool GetPlayedBytes(std::uint32_t& byteCount) noexcept = 0;

  // Plays whole frames from the position 0 on; false when nothing will be heard.
  virtual bool Play(std::vector<std::uint8_t> sound) noexcept = 0;

  // Whether the host moves the position, and not a server; then it is moved, unless paused.
  virtual bool AdvanceByHost([[maybe_unused]] std::uint32_t byteCount) noexcept { return false; }
};

constexpr bool IsDeviceFormat(const WaveFormat& format) noexcept {
  constexpr std::uint16_t kPcm = 1;
  return format.formatTag == kPcm && (format.channels == 1 || format.channels == 2) &&
         (format.bitsPerSample == 8 || format.bitsPerSample == 16) && format.sampleRate >= 1000 &&
         format.sampleRate <= 192'000;
}

constexpr std::uint32_t BytesPerFrame(const WaveFormat& format) noexcept {
  return std::uint32_t{format.channels} * format.bitsPerSample / 8;
}

constexpr std::uint32_t BytesPerSecond(const WaveFormat& format) noexcept {
  return BytesPerFrame(format) * format.sampleRate;
}

constexpr std::uint8_t SilenceOf(const WaveFormat& format) noexcept { return format.bitsPerSample == 8 ? 0x80 : 0; }

}  // namespace tavimo::platform
