// The door of the core: host windows and their hooks, wave-file checks, the open tape's times and positions, and the
// output device.
#include <string_view>

#include "core/arithmetic.h"
#include "core/core_state.h"
#include "core/fixed_text.h"
#include "core/output_device.h"
#include "core/text_compare.h"
#include "core/time_model.h"
#include "core/wave_check.h"
#include "core/window_hook.h"
#include "platform/windows.h"
#include "recording/block_handler.h"
#include "recording/recording_state.h"
#include "tavimo.h"

namespace {

using namespace tavimo;
using core::State;

std::intptr_t VC_CALL DropWindowProc(VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                                     std::intptr_t lparam) noexcept {
  if (message != platform::kMessageDropFiles) {
    return platform::CallProc(State().hostWindows.dropHostProc, window, message, wparam, lparam);
  }
  platform::TakeFirstDroppedPath(wparam, State().dropBuffer.data(), core::kDropBufferBytes);
  return platform::PostToWindow(window, platform::kMessageKeyUp, platform::kKeyF11, 0) ? 1 : 0;
}

core::WindowHook DropHook() noexcept {
  core::HostWindows& windows = State().hostWindows;
  return {DropWindowProc, windows.dropWindow, windows.dropHostProc};
}

core::WindowHook WaveHook() noexcept {
  core::HostWindows& windows = State().hostWindows;
  return {HidedWndProcIn, windows.waveWindow, windows.waveHostProc};
}

}  // namespace

extern "C" {

void VC_CALL vcSetMainWnd(VcWindow window) noexcept { State().hostWindows.mainWindow = window; }

void VC_CALL vcSetDebugWnd(VcWindow window) noexcept { State().hostWindows.debugWindow = window; }

void VC_CALL vcSetPlayFormWndProc(VcWindow window) noexcept { core::PutInFront(DropHook(), WaveHook(), window); }

void VC_CALL vcSetWaveInAndOutWndProc(std::intptr_t /*ignored*/, VcWindow window) noexcept {
  core::PutInFront(WaveHook(), DropHook(), window);
}

std::intptr_t VC_CALL HidedWndProcIn(VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                                     std::intptr_t lparam) noexcept {
  if (message == platform::kMessageWaveInData) recording::HandleReturnedBlock();
  return platform::CallProc(State().hostWindows.waveHostProc, window, message, wparam, lparam);
}

void VC_CALL vcNoClose(VcWindow window, std::int32_t flag) noexcept {
  if (flag != 0) {
    platform::ChangeClassStyle(window, platform::kClassStyleNoClose, 0);
  } else {
    platform::ChangeClassStyle(window, 0, platform::kClassStyleNoClose);
  }
}

std::int32_t VC_CALL vcIfCtrlPressed() noexcept { return platform::IsKeyDown(platform::kKeyControl) ? 1 : 0; }

std::int32_t VC_CALL vcIsWaveFile(const char* path) noexcept {
  core::CoreState& state = State();
  core::CurrentWaveFile& tape = state.currentWaveFile;
  if (!tape.mmioHandle.IsOpen()) {
    return core::IsPlayableWaveFile(path, tape.riffChunk, tape.subChunk, state.currentFormat) ? 1 : 0;
  }
  // The tape that is open still needs its records.
  platform::ChunkInfo riff;
  platform::ChunkInfo sub;
  core::PcmFormat format;
  return core::IsPlayableWaveFile(path, riff, sub, format) ? 1 : 0;
}

std::int32_t VC_CALL vcIsMp3File(const char* path) noexcept {
  const std::string_view text = core::TextOf(path);
  return text.size() >= 4 && core::CompareIgnoringCase(text.substr(text.size() - 4), ".mp3") == 0 ? 1 : 0;
}

std::int32_t VC_CALL vcGetFileFormat(std::int32_t* sample_rate, std::int32_t* bits_per_sample,
                                     std::int32_t* channels) noexcept {
  const core::TapeFormat& format = State().tapeFormat;
  if (sample_rate != nullptr) *sample_rate = format.sampleRate;
  if (bits_per_sample != nullptr) *bits_per_sample = format.bitsPerSample;
  if (channels != nullptr) *channels = format.channels;
  return 0;
}

std::int32_t VC_CALL vcTimeToOffset(std::int32_t time_ms) noexcept {
  return core::TimeToFileOffset(State().currentFormat, State().currentWaveFile.dataOffset, time_ms);
}

std::int32_t VC_CALL vcOffsetToTime(const std::int32_t* format, std::int32_t byte_count) noexcept {
  if (format == nullptr) return 0;
  const std::int32_t bitsPerSecond = core::WrappingMultiply(core::WrappingMultiply(format[0], format[1]), format[2]);
  return core::BytesToTime(byte_count, bitsPerSecond / 8);
}

void VC_CALL vcSetFilePosByTime(std::int32_t time_ms) noexcept {
  State().currentWaveFile.filePosition = vcTimeToOffset(time_ms);
}

void VC_CALL vcSetFilePosByOffset(std::int32_t file_offset) noexcept {
  State().currentWaveFile.filePosition = file_offset;
}

void VC_CALL vcGotoFileEnd() noexcept { core::GotoFileEnd(State().currentWaveFile); }

void VC_CALL vcCloseReadOnlyFile() noexcept { core::CloseThroughChunks(State().currentWaveFile); }

void VC_CALL vcCloseWaveFile(std::int32_t mode) noexcept {
  constexpr std::int32_t kAppended = 2;
  constexpr std::int32_t kNew = 3;
  core::CurrentWaveFile& tape = State().currentWaveFile;
  if (mode == kNew) return core::CloseThroughChunks(tape);
  if (mode == kAppended) return core::CloseWithDataLength(tape);
  tape.mmioHandle.Close();
}

std::int32_t VC_CALL vcWaveOutOpenPlayFile() noexcept {
  return core::OpenOutputDevice(State().outputDevice, State().currentFormat) ? 0 : -1;
}

void VC_CALL vcWaveOutClose(std::int32_t stop_mode) noexcept {
  if (!core::StopModeCloses(stop_mode)) return;
  // While capture runs its blocks stay: one whose message is removed would never be queued again.
  if (!recording::State().captureRing.captureActive) platform::RemoveMessages(nullptr, platform::kMessageWaveInData);
  core::CloseOutputDevice(State().outputDevice);
}

std::int32_t VC_CALL vcGetWfOutTimePos() noexcept {
  const core::CoreState& state = State();
  const bool paused = recording::State().captureRing.paused;
  const std::int32_t played = core::PlayedBytesInBlock(
      state.outputDevice, paused ? core::AskPosition::Paused : core::AskPosition::WhilePlaying);
  const core::CurrentWaveFile& tape = state.currentWaveFile;
  return core::FileOffsetToTime(state.currentFormat, tape.dataOffset, core::WrappingAdd(played, tape.filePosition));
}

std::int32_t VC_CALL vcReturnFileStopPos() noexcept { return 0; }

void VC_CALL vcPlaySample() noexcept {}

}  // extern "C"
