// Implements audio_choice.h over the ends there are on Linux.
#include "platform/common/audio_choice.h"

#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/common/audio_devices.h"
#include "platform/common/file_input.h"
#include "platform/common/guarded.h"
#include "platform/common/host_ends.h"
#include "platform/linux/pulse_input.h"
#include "platform/linux/pulse_output.h"

namespace tavimo::platform {

namespace {

constexpr std::string_view kFilePrefix = "file:";

std::string ChosenOr(const std::optional<std::string>& choice, const char* variable) {
  if (choice) return *choice;
  const char* initial = std::getenv(variable);
  return initial && *initial ? initial : "default";
}

bool CanBeChosen(AudioDirection direction, std::string_view choice) {
  if (!choice.starts_with(kFilePrefix)) return !choice.empty();
  return direction == AudioDirection::Input && PcmFile::Open(std::string(choice.substr(kFilePrefix.size())));
}

}  // namespace

bool ChooseDevice(AudioDirection direction, const char* choice) noexcept {
  AudioDevices& devices = TheAudioDevices();
  std::optional<std::string>& chosen = direction == AudioDirection::Input ? devices.inputChoice : devices.outputChoice;
  if (!choice) {
    chosen.reset();
    return true;
  }
  return Guarded(false, [&] {
    if (!CanBeChosen(direction, choice)) return false;
    chosen = choice;
    return true;
  });
}

std::unique_ptr<InputSource> OpenChosenSource(const WaveFormat& format, BlockQueue& queue) {
  const std::string choice = ChosenOr(TheAudioDevices().inputChoice, "TAVIMO_WAVE_INPUT");
  if (choice == "none") return nullptr;
  if (choice == "host") return std::make_unique<HostInput>();
  if (choice.starts_with(kFilePrefix)) return FileInput::Open(choice.substr(kFilePrefix.size()), format, queue);
  return PulseInput::Open(choice, format, queue);
}

std::unique_ptr<OutputSink> OpenChosenSink(const WaveFormat& format) {
  const std::string choice = ChosenOr(TheAudioDevices().outputChoice, "TAVIMO_WAVE_OUTPUT");
  if (choice == "none") return nullptr;
  if (choice == "host") return std::make_unique<HostOutput>();
  return PulseOutput::Open(choice, format);
}

}  // namespace tavimo::platform
