// Implements audio.h: handles, formats and the blocks' rules, the same for every kind of device. What tells the kinds
// apart stands behind audio_ends.h.
#include <utility>

#include "platform/audio.h"
#include "platform/linux/audio_choice.h"
#include "platform/linux/audio_devices.h"
#include "platform/linux/guarded.h"
#include "platform/linux/never_destroyed.h"
#include "platform/windows.h"

namespace tavimo::platform {

namespace {

constexpr std::uint32_t kMessageWaveInOpen = 0x3BE;
constexpr std::uint32_t kMessageWaveInClose = 0x3BF;

void Notify(VcWindow window, std::uint32_t message, WaveInput device) noexcept {
  if (window) PostToWindow(window, message, device, 0);
}

template <class Operation>
AudioResult WithInput(WaveInput device, Operation operation) noexcept {
  InputDevice* found = TheAudioDevices().inputs.Find(device);
  return found ? operation(*found) : kAudioInvalidHandle;
}

AudioResult WithOutput(WaveOutput device, void (OutputSink::*operation)() noexcept) noexcept {
  OutputSink* found = TheAudioDevices().outputs.Find(device);
  if (!found) return kAudioInvalidHandle;
  (found->*operation)();
  return kAudioOk;
}

AudioResult Start(InputDevice& device) noexcept {
  if (device.queue.IsStarted()) return kAudioOk;
  device.queue.Start();
  if (device.source->Start()) return kAudioOk;
  device.queue.Stop();
  return kAudioNoDevice;
}

AudioResult Stop(InputDevice& device) noexcept {
  if (!device.queue.IsStarted()) return kAudioOk;
  device.source->Stop();
  device.queue.Stop();
  return kAudioOk;
}

}  // namespace

AudioDevices& TheAudioDevices() noexcept { return NeverDestroyed<AudioDevices>(); }

AudioResult OpenWaveInput(WaveInput& device, const WaveFormat& format, VcWindow window) noexcept {
  if (!IsDeviceFormat(format)) return kAudioBadFormat;
  if (window && !WindowExists(window)) return kAudioInvalidHandle;
  return Guarded(kAudioNoMemory, [&] {
    auto opened = std::make_unique<InputDevice>(window, format);
    opened->source = OpenChosenSource(format, opened->queue);
    if (!opened->source) return kAudioNoDevice;
    BlockQueue& queue = opened->queue;
    const WaveInput handle = TheAudioDevices().inputs.Add(std::move(opened));
    if (handle == 0) return kAudioNoMemory;
    queue.SetDevice(handle);
    device = handle;
    Notify(window, kMessageWaveInOpen, handle);
    return kAudioOk;
  });
}

AudioResult StartWaveInput(WaveInput device) noexcept { return WithInput(device, &Start); }

AudioResult StopWaveInput(WaveInput device) noexcept { return WithInput(device, &Stop); }

AudioResult ResetWaveInput(WaveInput device) noexcept {
  return WithInput(device, [](InputDevice& found) {
    Stop(found);
    found.queue.ReturnAll();
    return kAudioOk;
  });
}

AudioResult CloseWaveInput(WaveInput device) noexcept {
  return WithInput(device, [device](InputDevice& found) {
    if (!found.queue.IsEmpty()) return kAudioStillQueued;
    VcWindow owner = found.owner;
    TheAudioDevices().inputs.Remove(device);
    Notify(owner, kMessageWaveInClose, device);
    return kAudioOk;
  });
}

AudioResult PrepareBlock(WaveInput device, WaveBlock& block) noexcept {
  return WithInput(device, [&block](InputDevice& found) { return found.queue.Prepare(block); });
}

AudioResult UnprepareBlock(WaveInput device, WaveBlock& block) noexcept {
  return WithInput(device, [&block](InputDevice& found) { return found.queue.Unprepare(block); });
}

AudioResult QueueBlock(WaveInput device, WaveBlock& block) noexcept {
  return WithInput(device, [&block](InputDevice& found) { return found.queue.Add(block); });
}

AudioResult OpenWaveOutput(WaveOutput& device, const WaveFormat& format) noexcept {
  if (!IsDeviceFormat(format)) return kAudioBadFormat;
  return Guarded(kAudioNoMemory, [&] {
    std::unique_ptr<OutputSink> sink = OpenChosenSink(format);
    if (!sink) return kAudioNoDevice;
    const WaveOutput handle = TheAudioDevices().outputs.Add(std::move(sink));
    if (handle == 0) return kAudioNoMemory;
    device = handle;
    return kAudioOk;
  });
}

AudioResult PauseWaveOutput(WaveOutput device) noexcept { return WithOutput(device, &OutputSink::Pause); }

AudioResult RestartWaveOutput(WaveOutput device) noexcept { return WithOutput(device, &OutputSink::Restart); }

AudioResult ResetWaveOutput(WaveOutput device) noexcept { return WithOutput(device, &OutputSink::Reset); }

AudioResult CloseWaveOutput(WaveOutput device) noexcept {
  return TheAudioDevices().outputs.Remove(device) ? kAudioOk : kAudioInvalidHandle;
}

bool GetPlayedBytes(WaveOutput device, std::uint32_t& byteCount) noexcept {
  OutputSink* found = TheAudioDevices().outputs.Find(device);
  return found && found->GetPlayedBytes(byteCount);
}

}  // namespace tavimo::platform
