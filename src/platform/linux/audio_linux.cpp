// Implements the input half of audio.h: every device here is one whose blocks we queue ourselves. The output half is
// common/audio_devices.cpp.
#include "platform/audio.h"

#include "platform/common/audio_devices.h"

namespace tavimo::platform {

namespace {

template <class Operation>
AudioResult WithInput(WaveInput device, Operation operation) noexcept {
  InputDevice* found = TheAudioDevices().inputs.Find(device);
  return found ? operation(*found) : kAudioInvalidHandle;
}

}  // namespace

AudioResult OpenWaveInput(WaveInput& device, const WaveFormat& format, VcWindow window) noexcept {
  return OpenQueuedInput(device, format, window);
}

AudioResult StartWaveInput(WaveInput device) noexcept {
  return WithInput(device, [](InputDevice& found) { return found.Start(); });
}

AudioResult StopWaveInput(WaveInput device) noexcept {
  return WithInput(device, [](InputDevice& found) { return found.Stop(); });
}

AudioResult ResetWaveInput(WaveInput device) noexcept {
  return WithInput(device, [](InputDevice& found) { return found.Reset(); });
}

AudioResult CloseWaveInput(WaveInput device) noexcept { return CloseQueuedInput(device); }

AudioResult PrepareBlock(WaveInput device, WaveBlock& block) noexcept {
  return WithInput(device, [&block](InputDevice& found) { return found.queue.Prepare(block); });
}

AudioResult UnprepareBlock(WaveInput device, WaveBlock& block) noexcept {
  return WithInput(device, [&block](InputDevice& found) { return found.queue.Unprepare(block); });
}

AudioResult QueueBlock(WaveInput device, WaveBlock& block) noexcept {
  return WithInput(device, [&block](InputDevice& found) { return found.queue.Add(block); });
}

}  // namespace tavimo::platform
