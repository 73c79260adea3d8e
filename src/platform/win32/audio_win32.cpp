// Implements the input half of audio.h over waveIn; the output half is common/audio_devices.cpp. A handle is the
// system's own, as hosts know it from the messages of the device, or that of a device whose blocks we queue ourselves
// (the choices "host" and "file:").
#include "platform/audio.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <string>

#include "platform/common/audio_devices.h"
#include "platform/common/guarded.h"
#include "platform/win32/host_channel.h"
#include "platform/win32/wave_devices.h"
#include "platform/windows.h"

namespace tavimo::platform {

namespace {

// The system works on our blocks themselves.
static_assert(sizeof(WaveBlock) == sizeof(WAVEHDR));
static_assert(offsetof(WaveBlock, bytesRecorded) == offsetof(WAVEHDR, dwBytesRecorded));
static_assert(offsetof(WaveBlock, flags) == offsetof(WAVEHDR, dwFlags));
static_assert(offsetof(WaveBlock, reserved) == offsetof(WAVEHDR, reserved));
static_assert(kBlockDone == WHDR_DONE && kBlockPrepared == WHDR_PREPARED && kBlockQueued == WHDR_INQUEUE);

HWAVEIN Handle(WaveInput device) noexcept { return reinterpret_cast<HWAVEIN>(device); }
WAVEHDR* Header(WaveBlock& block) noexcept { return reinterpret_cast<WAVEHDR*>(&block); }

// The system's devices that are open, with the byte that stands for silence in their format.
struct OpenInput {
  WaveInput device = 0;  // 0: a free place
  char silence = 0;
};
std::array<OpenInput, 16> openInputs;

OpenInput* FindOpenInput(WaveInput device) noexcept {
  const auto found = std::find_if(openInputs.begin(), openInputs.end(),
                                  [device](const OpenInput& input) { return input.device == device; });
  return found == openInputs.end() ? nullptr : &*found;
}

// Calls the operation of ours, or the system's for a device of the system's that is open.
template <class Ours, class Systems>
AudioResult WithInput(WaveInput device, Ours ours, Systems systems) noexcept {
  if (device == 0) return kAudioInvalidHandle;
  if (InputDevice* found = TheAudioDevices().inputs.Find(device)) return ours(*found);
  return FindOpenInput(device) != nullptr ? systems(Handle(device)) : kAudioInvalidHandle;
}

// "host" and "file:…"
bool IsQueuedByUs(const std::string& choice) { return choice == "host" || choice.starts_with("file:"); }

AudioResult OpenSystemInput(WaveInput& device, const WaveFormat& format, VcWindow window, const std::string& choice) {
  if (!IsDeviceFormat(format)) return kAudioBadFormat;
  if (window != nullptr && !WindowExists(window)) return kAudioInvalidHandle;
  const std::optional<UINT> number = FindWaveDevice(AudioDirection::Input, choice);
  OpenInput* place = FindOpenInput(0);
  if (!number) return kAudioNoDevice;
  if (place == nullptr) return kAudioNoMemory;
  const WAVEFORMATEX system = SystemFormat(format);
  HWAVEIN opened = nullptr;
  const MMRESULT result = waveInOpen(&opened, *number, &system, reinterpret_cast<DWORD_PTR>(window), 0,
                                     window == nullptr ? CALLBACK_NULL : CALLBACK_WINDOW);
  if (result != MMSYSERR_NOERROR) return result;
  device = reinterpret_cast<WaveInput>(opened);
  *place = {device, static_cast<char>(SilenceOf(format))};
  return kAudioOk;
}

}  // namespace

AudioResult OpenWaveInput(WaveInput& device, const WaveFormat& format, VcWindow window) noexcept {
  return Guarded(kAudioNoMemory, [&] {
    const std::string choice = ChosenDevice(kInputVariables);
    if (choice == "none" || choice.empty()) return kAudioNoDevice;
    return IsQueuedByUs(choice) ? OpenQueuedInput(device, format, window)
                                : OpenSystemInput(device, format, window, choice);
  });
}

AudioResult StartWaveInput(WaveInput device) noexcept {
  return WithInput(
      device, [](InputDevice& found) { return found.Start(); }, &waveInStart);
}

AudioResult StopWaveInput(WaveInput device) noexcept {
  return WithInput(
      device, [](InputDevice& found) { return found.Stop(); }, &waveInStop);
}

AudioResult ResetWaveInput(WaveInput device) noexcept {
  return WithInput(
      device, [](InputDevice& found) { return found.Reset(); }, &waveInReset);
}

AudioResult CloseWaveInput(WaveInput device) noexcept {
  return WithInput(
      device, [device](InputDevice&) { return CloseQueuedInput(device); },
      [device](HWAVEIN handle) {
        const AudioResult result = waveInClose(handle);
        if (result == kAudioOk) FindOpenInput(device)->device = 0;
        return result;
      });
}

AudioResult PrepareBlock(WaveInput device, WaveBlock& block) noexcept {
  return WithInput(
      device, [&block](InputDevice& found) { return found.queue.Prepare(block); },
      [&block](HWAVEIN handle) { return waveInPrepareHeader(handle, Header(block), sizeof(WAVEHDR)); });
}

AudioResult UnprepareBlock(WaveInput device, WaveBlock& block) noexcept {
  return WithInput(
      device, [&block](InputDevice& found) { return found.queue.Unprepare(block); },
      [&block](HWAVEIN handle) { return waveInUnprepareHeader(handle, Header(block), sizeof(WAVEHDR)); });
}

// A block that comes back before it is full is silent behind its sound.
AudioResult QueueBlock(WaveInput device, WaveBlock& block) noexcept {
  return WithInput(
      device, [&block](InputDevice& found) { return found.queue.Add(block); },
      [&block, device](HWAVEIN handle) {
        const bool isOurs = (block.flags & (kBlockPrepared | kBlockQueued)) == kBlockPrepared;
        if (isOurs && block.data != nullptr)
          std::memset(block.data, FindOpenInput(device)->silence, block.bufferLength);
        return waveInAddBuffer(handle, Header(block), sizeof(WAVEHDR));
      });
}

}  // namespace tavimo::platform
