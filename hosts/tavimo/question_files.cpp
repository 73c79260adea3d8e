#include "question_files.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <iostream>

#include "engine_boxes.h"
#include "lesson_lock.h"
#include "new_file.h"
#include "page_data.h"
#include "refusal.h"
#include "system.h"
#include "tavimo.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kIndexRecordBytes = 52;
constexpr const char* kLockFile = "questions.lock";
constexpr const char* kTitles = "article.txt";  // the name that the engine looks for in the current directory

fs::path InTemp(const LessonSession& session, const char* extension) {
  return fs::path(session.DigestPath()).replace_extension(extension);
}

ScriptText ReadNamed(const fs::path& file, const std::optional<std::string>& encoding) {
  try {
    return ReadScriptText(file, encoding);
  } catch (const Refusal& refusal) {
    throw Refusal(Readable(file.filename()) + ": " + refusal.what());
  }
}

// While it lives the engine does not beep: the line that is written says enough.
struct NoBeeps {
  NoBeeps() {
    tvSetBeepHandler([](void*) {}, nullptr);
  }
  NoBeeps(const NoBeeps&) = delete;
  NoBeeps& operator=(const NoBeeps&) = delete;
  ~NoBeeps() { tvSetBeepHandler(nullptr, nullptr); }
};

// The one that the engine reads: its own, or else that beside the recording.
std::string StudyFileInUse(const LessonSession& session) {
  if (fs::exists(session.StudyPath())) return session.StudyEngineName();
  const std::string& name = session.EngineName();
  return name.substr(0, name.rfind('.')) + ".zud";
}

void WriteNew(const fs::path& path, const std::string& bytes) {
  NewFile file(path);
  file.Write(bytes.data(), bytes.size());
  file.PutInPlace();
}

bool HasSize(const fs::path& path, std::size_t byteCount) {
  std::error_code error;
  return fs::file_size(path, error) == byteCount && !error;
}

// The index gets the script's time only when all is whole, so that a kill before leaves one that counts as old.
void RunCompiler(LessonSession& session, const fs::path& copy, std::size_t sentenceCount) {
  const CollectedBoxes messages;
  const NoBeeps quiet;
  const std::int32_t result = vcConvertScrToTstWz(StudyFileInUse(session).c_str(), EnginePath(copy).value().c_str());
  const bool isWhole = HasSize(QuestionIndex(session), sentenceCount * kIndexRecordBytes);
  if (result == 0 && isWhole && messages.Text().empty()) return;
  std::error_code ignored;
  fs::remove(QuestionIndex(session), ignored);
  fs::remove(InTemp(session, ".wz"), ignored);
  throw Refusal(messages.Text().empty()
                    ? "its questions could not be written in " + Readable(fs::current_path() / "temp")
                    : "the engine cannot compile its questions: " + messages.Text());
}

std::optional<fs::path> ScriptOf(const LessonSession& session, const QuestionSource& source) {
  return source.script ? source.script : FileBeside(session.Recording(), ".scr");
}

bool HasBytes(const fs::path& file, const std::string& bytes) {
  return HasSize(file, bytes.size()) && FileBytes(file) == bytes;
}

// Whether the texts of the last record are there too.
bool HoldsItsTexts(const fs::path& index) {
  constexpr std::size_t kTextOffsetAt = 8;
  const std::string records = FileBytes(index);
  if (records.size() < kIndexRecordBytes) return false;
  std::array<std::uint32_t, 2> text{};  // where it begins, how long it is; the index is little-endian, as the host is
  std::memcpy(text.data(), records.data() + records.size() - kIndexRecordBytes + kTextOffsetAt, sizeof text);
  std::error_code error;
  const std::uintmax_t held = fs::file_size(fs::path(index).replace_extension(".wz"), error);
  return !error && held >= std::uintmax_t{text[0]} + text[1];
}

// Two scripts may have one time, as those of one archive do.
bool IsCurrent(const LessonSession& session, const fs::path& script, const QuestionSource& source,
               std::size_t sentenceCount) {
  const fs::path index = QuestionIndex(session);
  std::error_code error;
  return HasSize(index, sentenceCount * kIndexRecordBytes) && HoldsItsTexts(index) &&
         LastWriteTime(index, error) == LastWriteTime(script, error) && !error &&
         HasBytes(InTemp(session, ".scr"), ReadNamed(script, source.encoding).gbk);
}

// Titles that cannot be read are none: the questions are worth showing without them.
std::optional<ScriptText> ReadTitles(const fs::path& file) {
  try {
    ScriptText text = ReadScriptText(file, {});
    std::cerr << DescribeLost(file, text);
    return text;
  } catch (const Refusal&) {
    std::cerr << "tavimo: the titles of passages, " << Readable(file)
              << ", cannot be read and are left out; write them in UTF-8 or GBK\n";
    return {};
  }
}

// The copy is written only where it differs: a list may be shown by several programs at once, and from a home that is
// read-only.
void RefreshTitles(const LessonSession& session) {
  const auto source = FileBeside(session.Recording().parent_path() / kTitles, ".txt");
  const std::optional<ScriptText> text = source ? ReadTitles(*source) : std::nullopt;
  if (!text) {
    std::error_code error;
    fs::remove(kTitles, error);
  } else if (!HasBytes(kTitles, text->gbk)) {
    WriteNew(fs::absolute(kTitles), text->gbk);
  }
}

std::size_t Compile(LessonSession& session, const QuestionSource& source) {
  const auto script = ScriptOf(session, source);
  if (!script) {
    const fs::path expected = fs::path(session.Recording()).replace_extension(".scr");
    throw Refusal("it has no questions; write them in " + Readable(expected) + ", or name their --script");
  }
  const std::size_t sentenceCount = SentenceCount(session);
  std::error_code error;
  const fs::file_time_type time = LastWriteTime(*script, error);  // before the reading: a later change shows
  const CheckedScript checked = CheckScript(*script, source.encoding, sentenceCount);
  std::cerr << checked.lines;
  if (checked.faultCount > 0) {
    throw Refusal("its questions have " + Counted(checked.faultCount, "fault") + " and were not compiled");
  }
  const fs::path copy = InTemp(session, ".scr");
  WriteNew(copy, checked.text.gbk);
  RunCompiler(session, copy, sentenceCount);
  SetLastWriteTime(QuestionIndex(session), time, error);
  return sentenceCount;
}

// Without a script beside the recording those that were compiled last stay, as long as they fit its sentences.
void CheckCompiled(LessonSession& session) {
  const std::size_t indexBytes = SentenceCount(session) * kIndexRecordBytes;
  if (!fs::exists(QuestionIndex(session)) || HasSize(QuestionIndex(session), indexBytes)) return;
  throw Refusal("its sentences are others than when its questions were compiled; name their --script again");
}

void Refresh(LessonSession& session, const QuestionSource& source) {
  const auto script = ScriptOf(session, source);
  if (!script) CheckCompiled(session);
  const bool canStay =
      script ? IsCurrent(session, *script, source, SentenceCount(session)) : fs::exists(QuestionIndex(session));
  if (!canStay) Compile(session, source);
  RefreshTitles(session);
}

}  // namespace

CheckedScript CheckScript(const fs::path& script, const std::optional<std::string>& encoding,
                          std::optional<std::size_t> sentenceCount) {
  CheckedScript checked{ReadNamed(script, encoding), {}, {}, 0};
  checked.lint = LintQuestions(checked.text.gbk, sentenceCount);
  checked.lines = DescribeLost(script, checked.text);
  for (const Finding& finding : checked.lint.findings) {
    checked.lines += Readable(script) + ":" + std::to_string(finding.line) + ":" + std::to_string(finding.column) +
                     ": " + (finding.weight == Weight::Note ? "note: " : "") + finding.what + "\n";
  }
  checked.faultCount = checked.lint.FaultCount() + checked.text.lost.size();
  return checked;
}

std::size_t SentenceCount(LessonSession& session) {
  const std::size_t count = session.LoadStudyFile().size();
  if (count == 0) throw Refusal("it was not cut into sentences yet; tavimo cut does that");
  return count;
}

std::size_t CompileQuestions(LessonSession& session, const QuestionSource& source) {
  const LessonLock lock(kLockFile, kChangingElsewhere, WhenHeld::Wait);
  return Compile(session, source);
}

std::vector<Exercise> LoadExercises(LessonSession& session, const QuestionSource& source) {
  const LessonLock lock(kLockFile, kChangingElsewhere, WhenHeld::Wait);
  Refresh(session, source);
  return ReadExercises(session);
}

fs::path QuestionIndex(const LessonSession& session) { return InTemp(session, ".tst"); }

}  // namespace tavimo::host
