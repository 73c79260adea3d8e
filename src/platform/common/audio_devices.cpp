// Implements audio_devices.h and the output half of audio.h: handles, formats and the blocks' rules, the same for every
// kind of end. What tells the kinds apart stands behind audio_ends.h.
#include "platform/common/audio_devices.h"

#include <utility>

#include "platform/common/audio_choice.h"
#include "platform/common/guarded.h"
#include "platform/common/never_destroyed.h"
#include "platform/windows.h"

namespace tavimo::platform {

namespace {

void Notify(VcWindow window, InputNotice notice, WaveInput device) noexcept {
  if (window) PostToWindow(window, static_cast<std::uint32_t>(notice), device, 0);
}

AudioResult WithOutput(WaveOutput device, void (OutputSink::*operation)() noexcept) noexcept {
  OutputSink* found = TheAudioDevices().outputs.Find(device);
  if (!found) return kAudioInvalidHandle;
  (found->*operation)();
  return kAudioOk;
}

}  // namespace

AudioDevices& TheAudioDevices() noexcept { return NeverDestroyed<AudioDevices>(); }

AudioResult InputDevice::Start() noexcept {
  if (queue.IsStarted()) return kAudioOk;
  queue.Start();
  if (source->Start()) return kAudioOk;
  queue.Stop();
  return kAudioNoDevice;
}

AudioResult InputDevice::Stop() noexcept {
  if (!queue.IsStarted()) return kAudioOk;
  source->Stop();
  queue.Stop();
  return kAudioOk;
}

AudioResult InputDevice::Reset() noexcept {
  Stop();
  queue.ReturnAll();
  return kAudioOk;
}

AudioResult OpenQueuedInput(WaveInput& device, const WaveFormat& format, VcWindow window) noexcept {
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
    Notify(window, InputNotice::Opened, handle);
    return kAudioOk;
  });
}

AudioResult CloseQueuedInput(WaveInput device) noexcept {
  InputDevice* found = TheAudioDevices().inputs.Find(device);
  if (!found) return kAudioInvalidHandle;
  if (!found->queue.IsEmpty()) return kAudioStillQueued;
  VcWindow owner = found->owner;
  TheAudioDevices().inputs.Remove(device);
  Notify(owner, InputNotice::Closed, device);
  return kAudioOk;
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
