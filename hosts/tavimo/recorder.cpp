#include "recorder.h"

#include <chrono>
#include <iostream>

#include "engine_boxes.h"
#include "lesson_lock.h"
#include "level_meter.h"
#include "refusal.h"
#include "speech_end.h"
#include "system.h"
#include "tape_recovery.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kDispatchMs = 50;
constexpr auto kLongestWaitForBlock = std::chrono::seconds(3);
constexpr std::int64_t kLongestTakeMs = 3'600'000;  // for a learner who walked away
constexpr int kNewTape = 3;
constexpr int kContinuedTape = 2;

struct TapeFormat {
  std::int32_t sampleRate = 22050;
  std::int32_t bitsPerSample = 16;
  std::int32_t channels = 1;
};

TapeFormat FormatOf(const WaveHeader& header) {
  return {static_cast<std::int32_t>(header.sampleRate), header.bitsPerSample, header.channels};
}

// What the level bar has been told since recording began. The engine posts one level for every block.
struct Capture {
  int blockCount = 0;
  int level = 0;
  double blockMs = 0;
  SpeechEnd speech;
};
Capture capture;  // a window procedure has no other way to it

intptr_t VC_CALL TakeLevel(VcWindow window, std::uint32_t message, std::uintptr_t wparam, intptr_t lparam) {
  if (message == TV_PBM_SETPOS) {
    ++capture.blockCount;
    capture.level = static_cast<int>(wparam);
    capture.speech.Take(capture.level, capture.blockMs);
  }
  return tvDefaultProc(window, message, wparam, lparam);
}

// The windows that the engine reports to, while a recording lasts.
class CaptureWindows {
 public:
  CaptureWindows() {
    vcSetMainWnd(main_);
    vcSetWaveInAndOutWndProc(0, wave_);
    vcSetRecordingVolumeBarHandle(bar_);
  }
  CaptureWindows(const CaptureWindows&) = delete;
  CaptureWindows& operator=(const CaptureWindows&) = delete;
  ~CaptureWindows() {
    vcWaveInCloseForTape();
    vcSetMainWnd(nullptr);
    vcSetRecordingVolumeBarHandle(nullptr);
    for (VcWindow window : {main_, wave_, bar_}) tvDestroyWindow(window);
  }

 private:
  VcWindow main_ = tvCreateWindow(TV_WINDOW, nullptr, nullptr);
  VcWindow wave_ = tvCreateWindow(TV_WINDOW, nullptr, nullptr);
  VcWindow bar_ = tvCreateWindow(TV_PROGRESS_BAR, nullptr, TakeLevel);
};

// A second file for what is continued, so that the take itself stays as it is. It gets its name when it is whole.
void CopyToTape(const Take& take, std::uint64_t byteCount) {
  const fs::path unfinished = fs::path(kTapeFile) += ".new";
  std::error_code error;
  fs::remove(unfinished, error);  // one C++ library takes what is there for the file itself, and copies nothing
  if (!error) fs::copy_file(take.file, unfinished, error);
  // Cut here and not by recording over it: were the program killed, old words would stand behind the new ones.
  if (!error) fs::resize_file(unfinished, byteCount, error);
  if (!error) Rename(unfinished, kTapeFile, error);
  if (!error) return;
  std::error_code ignored;
  fs::remove(unfinished, ignored);
  throw Refusal("its newest take cannot be copied to continue it (" + ReasonOf(error) + ")");
}

WaveHeader CopyNewestTake(const LessonSession& session, const RecordingRequest& request) {
  const Take take = ChooseTake(request.sentence, {});
  const WaveHeader header = ReadWaveHeader(take.file);
  if (!header.problem.empty()) throw Refusal("its newest take cannot be continued: " + header.problem);
  std::uint64_t soundBytes = header.dataLength;
  if (request.start == TakeStart::AtTime) {
    if (request.atMs > header.DurationMs()) {
      throw Refusal("its newest take ends at " + FormatTime(header.DurationMs()) + ", before " +
                    FormatTime(request.atMs));
    }
    soundBytes = header.ByteAt(request.atMs);
  }
  const std::uint64_t byteCount = header.dataOffset + WholeFrames(soundBytes, header);
  WriteTapeNote({request.sentence, byteCount, Utf8(session.Recording())});
  CopyToTape(take, byteCount);
  return header;
}

// The open tape with its device running, or nothing of either.
class OpenTape {
 public:
  OpenTape(const LessonSession& session, const RecordingRequest& request) {
    if (request.start != TakeStart::Fresh) {
      OpenContinued(session, request);
    } else {
      WriteTapeNote({request.sentence, 0, Utf8(session.Recording())});
    }
  }
  OpenTape(const OpenTape&) = delete;
  OpenTape& operator=(const OpenTape&) = delete;
  ~OpenTape() { Close(); }

  void OpenFresh(const TapeFormat& format) {
    format_ = format;
    if (vcNewTapeFile(format.sampleRate, format.bitsPerSample, format.channels, kTapeEngineName) != 0) Refuse();
    startBytes_ = kTapeHeaderBytes;
  }

  [[nodiscard]] bool StartDevice() const {
    if (vcWaveInOpenForTape(format_.sampleRate, format_.bitsPerSample, format_.channels) == 1) return true;
    vcWaveInCloseForTape();
    return false;
  }

  // Whether every block that was captured has reached the disk.
  [[nodiscard]] bool HoldsBlocks(int blockCount) const {
    std::error_code error;
    const std::uint64_t bytes = fs::file_size(kTapeFile, error);
    return !error && bytes >= startBytes_ + static_cast<std::uint64_t>(blockCount) * kTapeBlockBytes;
  }

  [[nodiscard]] std::int64_t StartMs() const { return startMs_; }

  void Close() {
    vcWaveInCloseForTape();
    vcCloseWaveFile(closeMode_);
  }

 private:
  void OpenContinued(const LessonSession& session, const RecordingRequest& request) {
    format_ = FormatOf(CopyNewestTake(session, request));
    startMs_ = vcAppendTapeFile(kTapeEngineName);
    if (startMs_ < 0) Refuse();
    vcGotoFileEnd();
    startBytes_ = fs::file_size(kTapeFile);
    closeMode_ = kContinuedTape;
  }

  [[noreturn]] void Refuse() const {
    throw Refusal("the recording cannot be made in " + Readable(fs::current_path() / "tmpwav") + Reason());
  }

  // The engine tells in boxes why a tape cannot be opened.
  [[nodiscard]] std::string Reason() const { return boxes_.Text().empty() ? "" : " (" + boxes_.Text() + ")"; }

  CollectedBoxes boxes_;
  TapeFormat format_;
  std::uint64_t startBytes_ = 0;
  std::int64_t startMs_ = 0;
  int closeMode_ = kNewTape;
};

void ChooseDevice(const std::string& device) {
  if (device.empty() || tvUseWaveInput(device.c_str()) == 0) return;
  const bool isFile = device.starts_with("file:");
  if (isFile && !EnginePath(PathFromUtf8(device.substr(5)))) {
    throw Refusal("no sound can be taken from " + ReadableText(device.substr(5)) + ": its name has no GBK form");
  }
  throw Refusal(isFile ? "no sound can be taken from " + ReadableText(device.substr(5)) +
                             ": it is no PCM wave file of 8 or 16 bits"
                       : "'" + ReadableText(device) + "' is no device; tavimo devices lists them");
}

void StartDevice(OpenTape& tape, const LessonSession& session, const RecordingRequest& request) {
  if (request.start == TakeStart::Fresh) {
    tape.OpenFresh(FormatOf(session.Header()));
    if (tape.StartDevice()) return;
    tape.Close();
    tape.OpenFresh(TapeFormat{});  // devices that do not know the recording's format know this one
  }
  if (!tape.StartDevice()) throw Refusal("there is no microphone to record from; tavimo devices lists them");
}

std::string HintFor(const TerminalKeys& keys) { return keys.AreSeen() ? "Enter or q ends, Ctrl-C too" : "Ctrl-C ends"; }

bool IsEndKey(char key) { return key == '\n' || key == '\r' || key == 'q' || key == 'Q'; }

std::optional<TakeEnd> EndNow(const OpenTape& tape, const RecordingRequest& request, TerminalKeys& keys) {
  const auto recordedMs = static_cast<std::int64_t>(capture.blockCount * capture.blockMs);
  if (!tape.HoldsBlocks(capture.blockCount)) return TakeEnd::DiskFull;
  if (Interrupted()) return TakeEnd::Interrupt;
  for (char key = keys.Next(); key != '\0'; key = keys.Next()) {
    if (IsEndKey(key)) return TakeEnd::Key;
  }
  if (recordedMs >= request.lengthMs.value_or(kLongestTakeMs)) return TakeEnd::Length;
  if (request.silenceMs && capture.speech.IsSilentFor(*request.silenceMs)) return TakeEnd::Silence;
  return {};
}

TakeEnd RecordUntilEnd(const OpenTape& tape, const RecordingRequest& request) {
  TerminalKeys keys;
  LevelMeter meter(HintFor(keys));
  vcRecordTape();
  Clock::time_point lastBlock = Clock::now();
  for (int seen = 0;;) {
    tvDispatchMessages(kDispatchMs);
    if (const auto end = EndNow(tape, request, keys)) return *end;
    if (capture.blockCount != seen) {
      seen = capture.blockCount;
      lastBlock = Clock::now();
      meter.Show(tape.StartMs() + static_cast<std::int64_t>(seen * capture.blockMs), capture.level);
    } else if (Clock::now() - lastBlock > kLongestWaitForBlock) {
      return TakeEnd::DeviceGone;
    }
  }
}

TakeEnd RecordTape(const LessonSession& session, const RecordingRequest& request) {
  const CaptureWindows windows;
  OpenTape tape(session, request);
  StartDevice(tape, session, request);
  capture.blockMs = vcGetRecordBufLenInTime();
  const TakeEnd end = RecordUntilEnd(tape, request);
  vcStopRecordTape();
  return end;
}

const char* WithoutSound(TakeEnd end) {
  if (end == TakeEnd::DiskFull) return "the disk is full; nothing could be recorded";
  return end == TakeEnd::DeviceGone ? "no sound comes from the microphone; nothing was recorded"
                                    : "it ended before any sound came; nothing was recorded";
}

}  // namespace

RecordingResult RecordTake(const LessonSession& session, const RecordingRequest& request) {
  const LessonLock lock(kTapeLockFile, kRecordingElsewhere);
  if (const auto unsaved = KeepTape())
    std::cerr << "tavimo: recovered an unsaved recording: " << Describe(*unsaved) << '\n';
  ChooseDevice(request.device);
  MakeRoomForTake(request.sentence);
  capture = {};
  RecordingResult result;
  try {
    result.end = RecordTape(session, request);
  } catch (...) {
    if (capture.blockCount == 0) DiscardTape();
    throw;
  }
  if (capture.blockCount == 0) {
    DiscardTape();  // a continued one holds nothing that its take does not
    throw Refusal(WithoutSound(result.end));
  }
  result.hasSpeech = capture.speech.HasBegun();
  auto take = KeepTape();
  if (!take) throw Refusal(WithoutSound(result.end));
  result.take = std::move(*take);
  return result;
}

}  // namespace tavimo::host
