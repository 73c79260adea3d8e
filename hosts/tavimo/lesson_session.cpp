#include "lesson_session.h"

#include <algorithm>
#include <array>
#include <iostream>

#include "new_file.h"
#include "refusal.h"
#include "tavimo.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kLongestEnginePath = 199;  // of a digest; a study file would allow 223
constexpr std::size_t kLongestEngineFileName = 99;

fs::path WithExtension(const fs::path& file, const char* extension) {
  const std::string name = Utf8(file.filename());
  return PathFromUtf8(name.substr(0, name.rfind('.')) + extension);
}

void WriteEmptyStudyFile(const fs::path& file) {
  constexpr std::size_t kBookmarkTableBytes = 320;
  const std::array<char, kBookmarkTableBytes> table{};
  NewFile study(file);
  study.Write(table.data(), table.size());
  study.PutInPlace();
}

}  // namespace

std::optional<std::string> UsableEngineName(const fs::path& recording) {
  std::optional<std::string> path = EnginePath(recording);
  const std::optional<std::string> name = EnginePath(recording.filename());
  if (!path || !name || path->size() > kLongestEnginePath || name->size() > kLongestEngineFileName) return {};
  // The engine takes what stands behind the last 0x5C byte for the file name; in some characters that is the second
  // byte, and the side files of several recordings would then bear one name.
  if (name->find('\\') != std::string::npos) return {};
  return path;
}

LessonSession::LessonSession(const fs::path& home, const fs::path& recording)
    : recording_(IdentityOf(recording)), header_(ReadWaveHeader(recording)) {
  if (!header_.problem.empty()) throw Refusal(header_.problem);
  folder_.emplace(home, recording_);
  NameFiles();
  FinishInterruptedEdit();
  if (vcIsWaveFile(engineName_.c_str()) == 0) throw Refusal("the engine does not take it for a PCM wave file");
}

void LessonSession::NameFiles() {
  if (const auto usable = UsableEngineName(recording_)) {
    engineName_ = *usable;
    digestPath_ = "temp" / WithExtension(recording_, ".tmp");
  } else {
    const fs::path alias = folder_->MakeAlias(recording_);
    if (folder_->IsNew()) {
      std::cerr << "tavimo: " << Readable(recording_.filename())
                << ": the engine cannot take this name or its path, so it reaches the recording by a link\n";
    }
    engineName_ = EnginePath(alias).value();
    digestPath_ = "temp" / WithExtension(alias, ".tmp");
  }
  digestEngineName_ = EnginePath(digestPath_).value();
}

void LessonSession::FinishInterruptedEdit() {
  if (!TakeBackInterruptedEdit(Files())) return;
  std::cerr << "tavimo: " << Readable(recording_.filename())
            << ": a change to it was interrupted; recording and sentences are as they were before it\n";
  ReadHeaderAgain();
}

void LessonSession::ReadHeaderAgain() {
  header_ = ReadWaveHeader(recording_);
  if (!header_.problem.empty()) throw Refusal(header_.problem);
}

fs::path LessonSession::StudyPath() const { return "zud" / WithExtension(digestPath_, ".zud"); }

std::string LessonSession::StudyEngineName() const { return EnginePath(StudyPath()).value(); }

std::vector<std::uint32_t> LessonSession::LoadStudyFile() {
  const std::int32_t count = vcOpenSentenceFile(engineName_.c_str());
  if (count < 0) return {};
  std::vector<std::uint32_t> starts(static_cast<std::size_t>(count));
  vcReadSentenceData(starts.data(), count);
  return starts;
}

bool LessonSession::CanBeSentences(const std::vector<std::uint32_t>& starts) const {
  return starts.size() >= 2 && std::is_sorted(starts.begin(), starts.end()) &&
         starts.back() < header_.LevelCount() * kLevelMs;
}

void LessonSession::StoreStudyFile(const std::vector<std::uint32_t>& starts) {
  vcWriteExtraFileData(engineName_.c_str(), starts.data(), static_cast<std::int32_t>(starts.size()));
  const std::vector<std::uint32_t> kept = starts.size() >= 2 ? starts : std::vector<std::uint32_t>{};
  // Where nothing is to be kept the engine keeps no file, and would then read the one beside the recording again.
  if (LoadStudyFile() != kept && kept.empty()) WriteEmptyStudyFile(StudyPath());
  if (LoadStudyFile() != kept) {
    throw Refusal("its study file could not be written in " + Readable(folder_->Path() / "zud"));
  }
}

}  // namespace tavimo::host
