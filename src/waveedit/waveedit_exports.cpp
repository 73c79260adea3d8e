// The door of wave editing.
#include "platform/files.h"
#include "platform/windows.h"
#include "sentences/sentences_state.h"
#include "sentences/start_table.h"
#include "tavimo.h"
#include "waveedit/sentence_deletion.h"
#include "waveedit/stereo_to_mono.h"
#include "waveedit/wave_segment.h"
#include "waveedit/waveedit_state.h"

namespace {

using namespace tavimo;

class BarObserver final : public waveedit::DeletionObserver {
 public:
  explicit BarObserver(VcWindow bar) noexcept : bar_(bar) {}

  void OnBegin() noexcept override {
    constexpr std::intptr_t kRangeZeroTo100 = 0x640000;
    platform::SendToWindow(bar_, platform::kMessageSetBarRange, 0, kRangeZeroTo100);
    OnPercent(0);
  }

  void OnPercent(std::int32_t percent) noexcept override {
    platform::SendToWindow(bar_, platform::kMessageSetBarPosition, static_cast<std::uintptr_t>(percent), 0);
  }

 private:
  VcWindow bar_;
};

// The bookmarks no longer fit the recording: the list ends at its first slot. The others keep their bytes.
void EndBookMarkList(sentences::BookMarkTable& table) noexcept {
  constexpr std::size_t kFirstLabelByte = 4;
  table.records.front().Empty();
  table.records.front().bytes[kFirstLabelByte] = 0;
}

void StoreKeptStarts(const char* studyPath, const std::uint32_t* starts, std::int32_t count) noexcept {
  sentences::StartTableWriter writer;
  if (!writer.Begin(studyPath)) return;
  EndBookMarkList(sentences::State().bookMarkTable);
  writer.AddHeader(sentences::State().bookMarkTable.Bytes());
  for (std::int32_t i = 0; i < count; ++i) {
    if (starts[i] != waveedit::kDeletedStart) writer.Add(starts[i]);
  }
  // The recording has been replaced: there is no result that could take that back.
  static_cast<void>(writer.Finish(platform::ReplacementFile::Durability::Synced));
}

}  // namespace

extern "C" {

std::int32_t VC_CALL vcSteroToMono(const char* source_path, const char* destination_path) noexcept {
  switch (waveedit::StereoToMono(source_path, destination_path, waveedit::State().transferBuffers)) {
    case waveedit::MonoResult::Written:
      return 0;
    case waveedit::MonoResult::AlreadyMono:
      return 1;
    case waveedit::MonoResult::Failed:
      return -1;
  }
  return -1;
}

std::int32_t VC_CALL vcDeleteSentenceInFile(const char* recording_path, const char* study_path, std::int32_t count,
                                            const std::uint32_t* flags, std::uint32_t* starts_ms,
                                            VcWindow progress_bar) noexcept {
  if (count < 1 || flags == nullptr || starts_ms == nullptr) return -1;
  if (platform::IsSameFile(recording_path, study_path)) return -1;
  const auto size = static_cast<std::size_t>(count);
  const waveedit::SentenceSelection selection{{starts_ms, size}, {flags, size}};
  BarObserver observer(progress_bar);
  if (!waveedit::IsUsable(selection) || !waveedit::DeleteSentences(recording_path, selection, observer)) return -1;
  waveedit::ShiftStarts({starts_ms, size}, selection.flags);
  StoreKeptStarts(study_path, starts_ms, count);
  return 0;
}

std::int32_t VC_CALL vcExtractWaveSeg(const char* source_path, const char* destination_path, std::uint32_t start_ms,
                                      std::uint32_t end_ms, void* buffer, std::int32_t buffer_bytes) noexcept {
  return waveedit::CopyWaveSegment(source_path, destination_path, start_ms, end_ms, buffer, buffer_bytes);
}

}  // extern "C"
