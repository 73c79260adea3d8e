// The door of sentences: segmentation, the study file and the tables of starts on their way to it, bookmarks, and the
// parameter files.
#include "core/fixed_text.h"
#include "digest/digest_state.h"
#include "hostutil/temp_side_file.h"
#include "platform/files.h"
#include "platform/windows.h"
#include "recording/recording_state.h"
#include "sentences/bookmarks.h"
#include "sentences/parameter_files.h"
#include "sentences/segmentation.h"
#include "sentences/sentences_state.h"
#include "sentences/start_table.h"
#include "sentences/study_file.h"
#include "tavimo.h"

using namespace tavimo;
using sentences::State;

extern "C" {

std::int32_t VC_CALL vcMakeSentence() noexcept {
  platform::FileStream& digest = digest::State().currentDigest;
  if (!digest.IsOpen()) return -1;
  const recording::RecordingState& silence = recording::State();
  return sentences::MakeSentences(digest, {silence.silenceThreshold, silence.silenceLength});
}

std::int32_t VC_CALL vcOpenSentenceFile(const char* recording_path) noexcept {
  State().bookMarkTable.Empty();
  State().studyFile.Close();
  sentences::StudyPaths paths;
  if (!sentences::DeriveStudyPaths(core::TextOf(recording_path), paths)) return -1;
  return sentences::OpenStudyFile(paths, State().studyFile);
}

std::int32_t VC_CALL vcReadSentenceData(std::uint32_t* starts_ms, std::int32_t count) noexcept {
  if (!State().studyFile.IsOpen()) return -1;
  sentences::ReadStudyFile(State().studyFile, State().bookMarkTable, starts_ms, count);
  State().studyFile.Close();
  return count;
}

void VC_CALL vcGetSentence(std::int32_t index, std::uint32_t* first, std::uint32_t* second) noexcept {
  if (State().studyFile.IsOpen()) sentences::ReadValuePair(State().studyFile, index, first, second);
}

std::int32_t VC_CALL vcReadTmpIdx(std::uint32_t* starts_ms, std::int32_t count) noexcept {
  platform::FileStream file = platform::FileStream::Open(sentences::kTmpSentences, platform::OpenMode::Read);
  if (!file.IsOpen()) return -1;
  sentences::ReadStarts(file, starts_ms, count);
  file.Close();
  return platform::RemoveFile(sentences::kTmpSentences) ? 0 : -1;
}

void VC_CALL vcWriteExtraFileData(const char* recording_path, const std::uint32_t* starts_ms,
                                  std::int32_t count) noexcept {
  sentences::StudyPaths paths;
  if (!sentences::DeriveStudyPaths(core::TextOf(recording_path), paths)) return;
  sentences::StoreStudyFile(paths, State().bookMarkTable, starts_ms, count);
}

void VC_CALL vcWriteMarkIdx(const char* path, const std::uint32_t* values, std::int32_t count) noexcept {
  sentences::StartTableWriter writer;
  if (count <= 1 || values == nullptr || !writer.Begin(path)) return;
  writer.Add(values, count);
  // Written whole or not at all; the host has no result to be told by.
  static_cast<void>(writer.Finish(platform::ReplacementFile::Durability::Synced));
}

std::int32_t VC_CALL vcAddBookMark(std::uint32_t time_ms, const char* label) noexcept {
  return sentences::AddBookMark(State().bookMarkTable, time_ms, core::TextOf(label)) ? 0 : -1;
}

void VC_CALL vcDeleteBookMark(std::int32_t index) noexcept { sentences::DeleteBookMark(State().bookMarkTable, index); }

void VC_CALL vcDeleteAllBookMark() noexcept { State().bookMarkTable.Empty(); }

std::int32_t VC_CALL vcGetTotalBookMarks() noexcept { return sentences::CountBookMarks(State().bookMarkTable); }

std::int32_t VC_CALL vcGetBookMarkTime(std::int32_t index) noexcept {
  return static_cast<std::int32_t>(sentences::BookMarkTime(State().bookMarkTable, index));
}

std::int32_t VC_CALL vcFillBookMarkList(VcWindow list_box, std::int32_t total_ms) noexcept {
  constexpr std::uint32_t kAddLine = 0x180;  // LB_ADDSTRING
  sentences::BookMarkTable& table = State().bookMarkTable;
  if (sentences::ReachesPast(table, total_ms)) table.Empty();
  const std::int32_t count = sentences::CountBookMarks(table);
  for (std::int32_t i = 0; i < count; ++i) {
    const sentences::BookMarkLine line = sentences::LineOf(table.records[static_cast<std::size_t>(i)]);
    platform::SendToWindow(list_box, kAddLine, 0, reinterpret_cast<std::intptr_t>(line.data()));
  }
  return count;
}

std::int32_t VC_CALL vcIfSoundParaFileExist(const char* recording_path) noexcept {
  return hostutil::EnsureSideFile(recording_path, ".par") ? 1 : 0;
}

std::int32_t VC_CALL vcWriteSoundFilePara(const char* recording_path, const char* parameter_path,
                                          const void* record) noexcept {
  return sentences::WriteSoundParameters(recording_path, parameter_path, static_cast<const std::uint8_t*>(record)) ? 1
                                                                                                                   : -1;
}

std::int32_t VC_CALL vcReadSoundFilePara(const char* parameter_path, void* record) noexcept {
  return sentences::ReadSoundParameters(parameter_path, static_cast<std::uint8_t*>(record)) ? 1 : -1;
}

void VC_CALL vcWriteParaFile(const char* path, std::int32_t first, std::int32_t second, std::int32_t third) noexcept {
  sentences::WriteParameterValues(path, {first, second, third});
}

std::int32_t VC_CALL vcIfParaMatch(const char* path, std::int32_t first, std::int32_t second,
                                   std::int32_t third) noexcept {
  return sentences::ParameterValuesMatch(path, {first, second, third}) ? 1 : 0;
}

}  // extern "C"
