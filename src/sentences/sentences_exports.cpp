// The door of sentences: segmentation, the study file, and the tables of starts on their way to it.
#include "core/fixed_text.h"
#include "digest/digest_state.h"
#include "platform/files.h"
#include "recording/recording_state.h"
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

}  // extern "C"
