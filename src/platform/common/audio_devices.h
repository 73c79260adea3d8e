// Everything about audio that this process keeps between calls, in one record: the open devices, the devices that are
// chosen and the sound a host plays. The user-interface thread alone uses it; a device's own thread reaches no further
// than that device's queue.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/common/audio_ends.h"
#include "platform/common/block_queue.h"
#include "platform/common/handle_table.h"

namespace tavimo::platform {

// What audio.h says of an input device, over a source of ours.
struct InputDevice {
  InputDevice(VcWindow window, const WaveFormat& format) noexcept : owner(window), queue(window, SilenceOf(format)) {}

  AudioResult Start() noexcept;
  AudioResult Stop() noexcept;
  AudioResult Reset() noexcept;

  VcWindow owner;
  BlockQueue queue;
  std::unique_ptr<InputSource> source;  // behind the queue: it goes first
};

struct PlayingSound {
  WaveOutput device = 0;  // 0: nothing plays
  std::uint32_t byteCount = 0;
  std::uint32_t bytesPerSecond = 0;
};

struct AudioDevices {
  HandleTable<InputDevice, HandleKind::AudioInput> inputs;
  HandleTable<OutputSink, HandleKind::AudioOutput> outputs;
  std::optional<std::string> inputChoice;  // nothing: what the environment says
  std::optional<std::string> outputChoice;
  PlayingSound playing;
};

AudioDevices& TheAudioDevices() noexcept;

// The message that an input device sends its window as it comes and as it goes.
enum class InputNotice : std::uint32_t { Opened = 0x3BE, Closed = 0x3BF };

// Input devices with the source that is chosen; audio.h says what the results are.
[[nodiscard]] AudioResult OpenQueuedInput(WaveInput& device, const WaveFormat& format, VcWindow window) noexcept;
AudioResult CloseQueuedInput(WaveInput device) noexcept;

}  // namespace tavimo::platform
