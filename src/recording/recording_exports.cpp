// The door of recording: tape files, the capture loop and its block handler, recording times and silence parameters.
#include "core/arithmetic.h"
#include "core/core_state.h"
#include "core/time_model.h"
#include "platform/gbk_literal.h"
#include "platform/windows.h"
#include "recording/block_handler.h"
#include "recording/level_meter.h"
#include "recording/recording_state.h"
#include "recording/tape_file.h"
#include "recording/tape_messages.h"
#include "tavimo.h"

namespace {

using namespace tavimo;
using recording::State;

// The result of a tape opener that has no fault to show.
constexpr std::int32_t kNoFault = 0;

std::int32_t ShowTapeFault(recording::TapeFault fault) noexcept {
  if (fault == recording::TapeFault::None) return kNoFault;
  platform::ShowMessageBox(recording::TapeMessage(fault), "Tavimo");
  return -1;
}

std::int32_t TapeDuration() noexcept {
  const core::CoreState& core = core::State();
  return core::BytesToTime(core.currentWaveFile.dataLength, core::BytesPerSecond(core.currentFormat));
}

std::int32_t LevelOf(std::span<const std::uint8_t> block) noexcept {
  return core::State().tapeFormat.bitsPerSample == 16 ? recording::AverageLevel16(block)
                                                      : recording::AverageLevel8(block);
}

// Faults of handing a block back; boxes without a caption, and the loop goes on behind them.
void ShowRequeueFaults(const recording::RequeueFaults& faults) noexcept {
  using namespace platform::literals;
  if (faults.preparing != recording::RequeueFault::None) {
    platform::ShowMessageBox("Prepare  error. ErrorNo 34 ", "");
  }
  if (faults.preparing == recording::RequeueFault::NoMemory) {
    platform::ShowMessageBox(u8"内存不够分配. ErrorNo 35"_gbk, "");
  }
  if (faults.notQueued) platform::ShowMessageBox("write error. ErrorNo 36", "");
}

}  // namespace

namespace tavimo::recording {

namespace {

void HandleOneBlock(CaptureRing& ring) noexcept {
  core::CurrentWaveFile& tape = core::State().currentWaveFile;
  const core::HostWindows& windows = core::State().hostWindows;
  const std::span<const std::uint8_t> block = NextBlock(ring);
  if (ring.tapeWriting) WriteBlock(tape, block);
  const std::int32_t level = LevelOf(block);
  const std::uint32_t session = ring.session;
  // The host reads positions in this message: they do not include the block yet.
  if (ring.tapeWriting) platform::SendToWindow(windows.mainWindow, platform::kMessageKeyUp, platform::kKeyF4, 0);
  if (ring.session != session) return;  // the host opened the device anew in its message: the block was another ring's
  platform::PostToWindow(windows.levelBar, platform::kMessageSetBarPosition, static_cast<std::uintptr_t>(level), 0);
  ++ring.returnedCount;
  if (ring.tapeWriting) {
    tape.dataLength = core::WrappingAdd(tape.dataLength, kCaptureBlockBytes);
    tape.filePosition = core::WrappingAdd(tape.filePosition, kCaptureBlockBytes);
  }
  // A host that closed the device in its message has taken the blocks back already.
  if (ring.captureActive) ShowRequeueFaults(RequeueNextBlock(ring));
}

}  // namespace

// A host may dispatch messages while it is sent one, from a box say: the blocks that return meanwhile wait for their turn.
void HandleReturnedBlock() noexcept {
  CaptureRing& ring = State().captureRing;
  if (!ring.captureActive) return;
  ++ring.waitingReturns;
  if (ring.isHandling) return;
  ring.isHandling = true;
  while (ring.captureActive && ring.waitingReturns > 0) {
    --ring.waitingReturns;
    HandleOneBlock(ring);
  }
  ring.isHandling = false;
}

}  // namespace tavimo::recording

extern "C" {

void VC_CALL vcSetTapeFileFormat(std::int32_t sample_rate, std::int32_t bits_per_sample,
                                 std::int32_t channels) noexcept {
  recording::SetTapeFormat(core::State().tapeFormat, sample_rate, bits_per_sample, channels);
}

std::int32_t VC_CALL vcNewTapeFile(std::int32_t sample_rate, std::int32_t bits_per_sample, std::int32_t channels,
                                   const char* path) noexcept {
  core::CoreState& core = core::State();
  vcSetTapeFileFormat(sample_rate, bits_per_sample, channels);
  return ShowTapeFault(recording::NewTape(path, core.tapeFormat, core.currentWaveFile, core.currentFormat));
}

std::int32_t VC_CALL vcAppendTapeFile(const char* path) noexcept {
  core::CoreState& core = core::State();
  const recording::TapeFault fault = recording::AppendTape(path, core.currentWaveFile, core.currentFormat);
  if (fault != recording::TapeFault::None) return ShowTapeFault(fault);
  const core::PcmFormat& format = core.currentFormat;
  vcSetTapeFileFormat(static_cast<std::int32_t>(format.sampleRate), format.bitsPerSample, format.channels);
  return TapeDuration();
}

std::int32_t VC_CALL vcSaveTapeFile(const char* source_path, const char* destination_path) noexcept {
  return recording::SaveTape(source_path, destination_path) ? 0 : -1;
}

void VC_CALL vcSetRecordingVolumeBarHandle(VcWindow bar) noexcept {
  constexpr std::intptr_t kRangeZeroTo128 = 0x800000;
  core::State().hostWindows.levelBar = bar;
  platform::SendToWindow(bar, platform::kMessageSetBarRange, 0, kRangeZeroTo128);
}

std::int32_t VC_CALL vcWaveInOpenForTape(std::int32_t sample_rate, std::int32_t bits_per_sample,
                                         std::int32_t channels) noexcept {
  recording::CaptureRing& ring = State().captureRing;
  if (ring.inputDevice != 0) return 0;
  vcSetTapeFileFormat(sample_rate, bits_per_sample, channels);
  if (!recording::FitsDevice(core::State().tapeFormat)) return 0;
  const core::PcmFormat& format = core::State().tapeFormat.deviceFormat;
  const platform::AudioResult opened = platform::OpenWaveInput(
      ring.inputDevice, {format.formatTag, format.channels, format.sampleRate, format.bitsPerSample},
      core::State().hostWindows.waveWindow);
  return opened == platform::kAudioOk && recording::BeginCapture(ring) ? 1 : 0;
}

void VC_CALL vcRecordTape() noexcept {
  core::CurrentWaveFile& tape = core::State().currentWaveFile;
  if (!tape.mmioHandle.IsOpen()) return;
  // A position before the sound, or behind 2 GiB where it wraps, would let the blocks overwrite the header or the start.
  if (tape.filePosition < tape.dataOffset) return;
  if (tape.mmioHandle.Seek(tape.filePosition, platform::SeekFrom::Start) < 0) return;
  tape.dataLength = core::WrappingSubtract(tape.filePosition, tape.dataOffset);
  State().captureRing.tapeWriting = true;
}

std::int32_t VC_CALL vcStopRecordTape() noexcept {
  State().captureRing.tapeWriting = false;
  return TapeDuration();
}

void VC_CALL vcPauseRecording() noexcept {
  State().captureRing.paused = true;
  platform::StopWaveInput(State().captureRing.inputDevice);
}

void VC_CALL vcRestartRecording() noexcept {
  State().captureRing.paused = false;
  platform::StartWaveInput(State().captureRing.inputDevice);
}

void VC_CALL vcWaveInCloseForTape() noexcept {
  recording::CaptureRing& ring = State().captureRing;
  if (ring.inputDevice == 0) return;
  recording::StopCapture(ring);
  platform::RemoveMessages(core::State().hostWindows.waveWindow, platform::kMessageWaveInData);
  recording::ReleaseCapture(ring);
}

double VC_CALL vcGetRecordBufLenInTime() noexcept {
  const core::TapeFormat& format = core::State().tapeFormat;
  const std::int32_t sampleBytes = format.bitsPerSample / 8;
  if (format.channels == 0 || format.sampleRate == 0 || sampleBytes == 0) return 0.0;
  const std::int32_t samples = static_cast<std::int32_t>(recording::kCaptureBlockBytes) / format.channels;
  return static_cast<double>(samples) / format.sampleRate / sampleBytes * 1000;
}

std::int32_t VC_CALL vcCountDiskSpace(double seconds) noexcept {
  const core::TapeFormat& format = core::State().tapeFormat;
  const double bytesPerSecond = static_cast<double>(format.bitsPerSample / 8) * format.sampleRate * format.channels;
  return core::TruncateToInt32(bytesPerSecond * seconds * 0.000001);
}

std::int32_t VC_CALL vcGetTimeToDisplay() noexcept { return 0; }

void VC_CALL vcSetSilentParam(std::int32_t threshold, std::int32_t silence_ms) noexcept {
  constexpr std::int32_t kLevelMs = 40;
  State().silenceThreshold = threshold;
  State().silenceLength = silence_ms / kLevelMs;
}

}  // extern "C"
