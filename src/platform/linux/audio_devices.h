// Everything about audio that this process keeps between calls, in one record: the open devices, the devices that are
// chosen and the sound a host plays. The user-interface thread alone uses it; a device's own thread reaches no further
// than that device's queue.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/linux/audio_ends.h"
#include "platform/linux/block_queue.h"
#include "platform/linux/handle_table.h"

namespace tavimo::platform {

struct InputDevice {
  InputDevice(VcWindow window, const WaveFormat& format) noexcept : owner(window), queue(window, SilenceOf(format)) {}

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

}  // namespace tavimo::platform
