#include "waveedit/sentence_deletion.h"

#include <algorithm>

#include "core/time_model.h"
#include "platform/files.h"
#include "waveedit/wave_data_file.h"

namespace tavimo::waveedit {

namespace {

constexpr const char* kTemporaryRecording = "tmpwav\\tmpdest.wav";

// Progress within a sentence is told by blocks of this size, after every tenth.
constexpr std::int64_t kProgressBlockBytes = 1024;
constexpr std::int64_t kBlocksPerReport = 10;

// Copying goes in pieces of a whole number of reports, so that a long sentence shows progress too.
constexpr std::int64_t kPieceBytes = kProgressBlockBytes * kBlocksPerReport * 100;

// WaveDataSeek's origin for the current position.
constexpr std::int32_t kFromHere = 1;

class Deletion {
 public:
  Deletion(WaveDataFile& recording, WaveDataFile& output, const SentenceSelection& selection,
           DeletionObserver& observer) noexcept
      : recording_(recording),
        output_(output),
        selection_(selection),
        observer_(observer),
        spans_(static_cast<std::int64_t>(selection.startsMs.size()) - 1) {}

  void Run() noexcept {
    observer_.OnBegin();
    Copy(SpanBytes(0, selection_.startsMs.front()));
    for (std::int64_t i = 0; i < spans_; ++i) {
      const std::int32_t bytes = SpanBytes(Start(i), Start(i + 1));
      if (IsKept(i)) {
        CopySentence(i, bytes);
      } else {
        WaveDataSeek(recording_, bytes, kFromHere);
      }
      observer_.OnPercent(static_cast<std::int32_t>(i * 100 / spans_));
    }
    if (IsKept(spans_)) Copy(recording_.dataLength);
  }

 private:
  [[nodiscard]] std::uint32_t Start(std::int64_t i) const noexcept {
    return selection_.startsMs[static_cast<std::size_t>(i)];
  }
  [[nodiscard]] bool IsKept(std::int64_t i) const noexcept {
    return selection_.flags[static_cast<std::size_t>(i)] == 0;
  }

  [[nodiscard]] std::int32_t SpanBytes(std::uint32_t fromMs, std::uint32_t toMs) const noexcept {
    return core::TimeToEvenBytes(recording_.format, std::int64_t{toMs} - fromMs);
  }

  void Copy(std::int64_t byteCount) noexcept { WaveDataCopy(recording_, output_, byteCount); }

  void CopySentence(std::int64_t index, std::int64_t byteCount) noexcept {
    const std::int64_t blocks = byteCount / kProgressBlockBytes;
    std::int64_t reported = 0;
    for (std::int64_t done = 0; done < byteCount; done += kPieceBytes) {
      const std::int64_t piece = std::min(kPieceBytes, byteCount - done);
      Copy(piece);
      const std::int64_t blocksDone = (done + piece) / kProgressBlockBytes;
      for (; reported < blocksDone; reported += kBlocksPerReport) observer_.OnPercent(Percent(index, reported, blocks));
    }
  }

  [[nodiscard]] std::int32_t Percent(std::int64_t index, std::int64_t block, std::int64_t blocks) const noexcept {
    const auto spans = static_cast<double>(spans_);
    const double part = static_cast<double>(block) / static_cast<double>(blocks) / spans;
    return static_cast<std::int32_t>((part + static_cast<double>(index) / spans) * 100);
  }

  WaveDataFile& recording_;
  WaveDataFile& output_;
  const SentenceSelection& selection_;
  DeletionObserver& observer_;
  std::int64_t spans_;  // sentences that end with the next one's start; the last one's index too
};

}  // namespace

bool IsUsable(const SentenceSelection& selection) noexcept {
  return !selection.startsMs.empty() && selection.flags.size() == selection.startsMs.size() &&
         std::is_sorted(selection.startsMs.begin(), selection.startsMs.end());
}

bool DeleteSentences(const char* recordingPath, const SentenceSelection& selection,
                     DeletionObserver& observer) noexcept {
  WaveDataFile recording;
  WaveDataFile output;
  if (!recording.path.Assign(core::TextOf(recordingPath)) || !output.path.Assign(core::TextOf(kTemporaryRecording)) ||
      platform::IsSameFile(recordingPath, kTemporaryRecording) || WaveDataOpen(recording) < 0) {
    return false;
  }
  output.format = recording.format;
  // Sound of 2 GiB and more cannot be counted here, and what is not counted would not be kept.
  if (recording.dataLength < 0 || WaveDataCreate(output) < 0) {
    WaveDataClose(recording);
    return false;
  }
  Deletion(recording, output, selection, observer).Run();
  WaveDataClose(recording);
  WaveDataClose(output);
  if (output.failed || recording.failed) {
    platform::RemoveFile(kTemporaryRecording);
    return false;
  }
  platform::ResetAttributes(recordingPath);
  return platform::MoveFileOver(kTemporaryRecording, recordingPath);
}

void ShiftStarts(std::span<std::uint32_t> startsMs, std::span<const std::uint32_t> flags) noexcept {
  std::uint32_t removedMs = 0;
  for (std::size_t i = 0; i < startsMs.size(); ++i) {
    const std::uint32_t startMs = startsMs[i];
    startsMs[i] = flags[i] == 0 ? startMs - removedMs : kDeletedStart;
    if (flags[i] != 0 && i + 1 < startsMs.size()) removedMs += startsMs[i + 1] - startMs;
  }
}

}  // namespace tavimo::waveedit
