// The host kit's audio: choosing devices, and serving those that the host serves itself. Playing a sound is
// common/host_kit_playing.cpp; how a choice reaches the engine is host_channel.h.
#include <cstring>
#include <optional>
#include <string>
#include <string_view>

#include "platform/common/audio_choice.h"
#include "platform/common/guarded.h"
#include "platform/common/pcm_file.h"
#include "platform/win32/host_channel.h"
#include "platform/win32/wave_devices.h"
#include "platform/win32/wide_text.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;
using platform::AudioDirection;

bool CanBeChosen(AudioDirection direction, std::string_view choice) {
  constexpr std::string_view kFilePrefix = "file:";
  if (!choice.starts_with(kFilePrefix)) return !choice.empty();
  return direction == AudioDirection::Input && platform::PcmFile::Open(std::string(choice.substr(kFilePrefix.size())));
}

}  // namespace

namespace tavimo::platform {

bool ChooseDevice(AudioDirection direction, const char* choice) noexcept {
  return Guarded(false, [&] {
    const wchar_t* variable = (direction == AudioDirection::Input ? kInputVariables : kOutputVariables).chosen;
    if (choice == nullptr) {
      SetEnvironmentVariableW(variable, nullptr);
      return true;
    }
    const std::optional<std::wstring> wide = WideFromUtf8(choice);
    return wide && CanBeChosen(direction, choice) && SetEnvironmentVariableW(variable, wide->c_str());
  });
}

}  // namespace tavimo::platform

extern "C" {

int tvUseWaveInput(const char* device) VC_NOEXCEPT {
  return platform::ChooseDevice(AudioDirection::Input, device) ? 0 : -1;
}

int tvUseWaveOutput(const char* device) VC_NOEXCEPT {
  return platform::ChooseDevice(AudioDirection::Output, device) ? 0 : -1;
}

int tvFeedWaveInput(const void* bytes, int count) VC_NOEXCEPT {
  if (!bytes || count < 0) return -1;
  LRESULT taken = -1;
  HWND device = nullptr;
  while (taken < 1 && (device = platform::NextChannelWindow(platform::ChannelEnd::Input, device)) != nullptr) {
    taken = SendMessageW(device, platform::kChannelFeed, static_cast<WPARAM>(count), reinterpret_cast<LPARAM>(bytes));
  }
  return static_cast<int>(taken);
}

int tvAdvanceWaveOutput(uint32_t bytes) VC_NOEXCEPT {
  bool isOpen = false;
  HWND device = nullptr;
  while ((device = platform::NextChannelWindow(platform::ChannelEnd::Output, device)) != nullptr) {
    isOpen = SendMessageW(device, platform::kChannelAdvance, bytes, 0) != 0 || isOpen;
  }
  return isOpen ? 0 : -1;
}

int tvListDevices(int input, char* names_utf8, int size) VC_NOEXCEPT {
  if (!names_utf8 || size < 1) return -1;
  names_utf8[0] = 0;
  return platform::Guarded(-1, [&] {
    std::string lines;
    const auto direction = input != 0 ? AudioDirection::Input : AudioDirection::Output;
    for (const std::string& name : platform::WaveDeviceNames(direction)) lines += name + '\n';
    if (!lines.empty()) lines.insert(0, "default\n");
    if (lines.size() >= static_cast<std::size_t>(size)) return -1;
    std::memcpy(names_utf8, lines.c_str(), lines.size() + 1);
    return static_cast<int>(lines.size()) + 1;
  });
}

}  // extern "C"
