// Implements wave_devices.h over waveIn and waveOut.
#include "platform/win32/wave_devices.h"

#include <utility>

#include "platform/win32/wide_text.h"

namespace tavimo::platform {

namespace {

std::wstring NameOfDevice(AudioDirection direction, UINT number) {
  if (direction == AudioDirection::Input) {
    WAVEINCAPSW input{};
    waveInGetDevCapsW(number, &input, sizeof input);
    return input.szPname;
  }
  WAVEOUTCAPSW output{};
  waveOutGetDevCapsW(number, &output, sizeof output);
  return output.szPname;
}

// Empty for a variable that is not set.
std::wstring ValueOf(const wchar_t* variable) {
  std::wstring value(GetEnvironmentVariableW(variable, nullptr, 0), L'\0');
  value.resize(GetEnvironmentVariableW(variable, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

UINT DeviceCount(AudioDirection direction) {
  return direction == AudioDirection::Input ? waveInGetNumDevs() : waveOutGetNumDevs();
}

}  // namespace

std::string ChosenDevice(const ChoiceVariables& variables) {
  std::wstring choice = ValueOf(variables.chosen);
  if (choice.empty()) choice = ValueOf(variables.initial);
  return choice.empty() ? "default" : Utf8FromWide(choice).value_or("");
}

std::optional<UINT> FindWaveDevice(AudioDirection direction, const std::string& name) {
  if (name == "default") return WAVE_MAPPER;
  const std::optional<std::wstring> wanted = WideFromUtf8(name);
  for (UINT number = 0; wanted && number < DeviceCount(direction); ++number) {
    if (NameOfDevice(direction, number) == *wanted) return number;
  }
  return std::nullopt;
}

std::vector<std::string> WaveDeviceNames(AudioDirection direction) {
  std::vector<std::string> names;
  for (UINT number = 0; number < DeviceCount(direction); ++number) {
    if (std::optional<std::string> name = Utf8FromWide(NameOfDevice(direction, number))) names.push_back(*name);
  }
  return names;
}

WAVEFORMATEX SystemFormat(const WaveFormat& format) noexcept {
  WAVEFORMATEX system{};
  system.wFormatTag = format.formatTag;
  system.nChannels = format.channels;
  system.nSamplesPerSec = format.sampleRate;
  system.wBitsPerSample = format.bitsPerSample;
  system.nBlockAlign = static_cast<WORD>(BytesPerFrame(format));
  system.nAvgBytesPerSec = BytesPerSecond(format);
  return system;
}

WaveOutSink::WaveOutSink(UINT deviceNumber, const WaveFormat& format) noexcept {
  const WAVEFORMATEX system = SystemFormat(format);
  if (waveOutOpen(&device_, deviceNumber, &system, 0, 0, CALLBACK_NULL) != MMSYSERR_NOERROR) device_ = nullptr;
}

WaveOutSink::~WaveOutSink() {
  if (device_ == nullptr) return;
  Reset();
  waveOutClose(device_);
}

void WaveOutSink::Reset() noexcept {
  waveOutReset(device_);
  if ((block_.dwFlags & WHDR_PREPARED) != 0) waveOutUnprepareHeader(device_, &block_, sizeof block_);
}

// A driver may answer in a unit of its own choice.
bool WaveOutSink::GetPlayedBytes(std::uint32_t& byteCount) noexcept {
  MMTIME position{};
  position.wType = TIME_BYTES;
  if (waveOutGetPosition(device_, &position, sizeof position) != MMSYSERR_NOERROR || position.wType != TIME_BYTES) {
    return false;
  }
  byteCount = position.u.cb;
  return true;
}

bool WaveOutSink::Play(std::vector<std::uint8_t> sound) noexcept {
  sound_ = std::move(sound);
  block_ = {};
  block_.lpData = reinterpret_cast<LPSTR>(sound_.data());
  block_.dwBufferLength = static_cast<DWORD>(sound_.size());
  return waveOutPrepareHeader(device_, &block_, sizeof block_) == MMSYSERR_NOERROR &&
         waveOutWrite(device_, &block_, sizeof block_) == MMSYSERR_NOERROR;
}

}  // namespace tavimo::platform
