#include "question_files.h"

#include <algorithm>
#include <iostream>

#include "new_file.h"
#include "refusal.h"
#include "tavimo.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kIndexRecordBytes = 52;
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

// The messages that the engine shows while it lives, and no beep.
class EngineMessages {
 public:
  EngineMessages() {
    tvSetMessageBoxHandler(&Note, this);
    tvSetBeepHandler([](void*) {}, nullptr);
  }
  EngineMessages(const EngineMessages&) = delete;
  EngineMessages& operator=(const EngineMessages&) = delete;
  ~EngineMessages() {
    tvSetMessageBoxHandler(nullptr, nullptr);
    tvSetBeepHandler(nullptr, nullptr);
  }

  [[nodiscard]] const std::string& Text() const { return text_; }

 private:
  static void Note(const char* text, const char* /*caption*/, void* user) {
    static_cast<EngineMessages*>(user)->text_ += ReadableText(Utf8FromGbk(text));
  }

  std::string text_;  // UTF-8
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
  const EngineMessages messages;
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

bool IsCurrent(const fs::path& index, const fs::path& script, std::size_t sentenceCount) {
  std::error_code error;
  return HasSize(index, sentenceCount * kIndexRecordBytes) &&
         fs::last_write_time(index, error) == fs::last_write_time(script, error) && !error;
}

ScriptText ReadTitles(const fs::path& file) {
  try {
    return ReadScriptText(file, {});
  } catch (const Refusal&) {
    throw Refusal("the titles of its passages, " + Readable(file) + ", cannot be read; write them in UTF-8 or GBK");
  }
}

void RefreshTitles(const LessonSession& session) {
  const fs::path source = session.Recording().parent_path() / kTitles;
  std::error_code error;
  if (!fs::exists(source, error)) {
    fs::remove(kTitles, error);
    return;
  }
  const ScriptText text = ReadTitles(source);
  std::cerr << DescribeLost(source, text);
  WriteNew(fs::absolute(kTitles), text.gbk);
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
  const auto script = ScriptOf(session, source);
  if (!script) {
    const fs::path expected = fs::path(session.Recording()).replace_extension(".scr");
    throw Refusal("it has no questions; write them in " + Readable(expected) + ", or name their --script");
  }
  const std::size_t sentenceCount = SentenceCount(session);
  std::error_code error;
  const fs::file_time_type time = fs::last_write_time(*script, error);  // before the reading: a later change shows
  const CheckedScript checked = CheckScript(*script, source.encoding, sentenceCount);
  std::cerr << checked.lines;
  if (checked.faultCount > 0) {
    throw Refusal("its questions have " + Counted(checked.faultCount, "fault") + " and were not compiled");
  }
  const fs::path copy = InTemp(session, ".scr");
  WriteNew(copy, checked.text.gbk);
  RunCompiler(session, copy, sentenceCount);
  fs::last_write_time(QuestionIndex(session), time, error);
  return sentenceCount;
}

void RefreshQuestions(LessonSession& session, const QuestionSource& source) {
  const auto script = ScriptOf(session, source);
  const bool canStay =
      script ? IsCurrent(QuestionIndex(session), *script, SentenceCount(session)) : fs::exists(QuestionIndex(session));
  if (!canStay || source.encoding) CompileQuestions(session, source);
  RefreshTitles(session);
}

fs::path QuestionIndex(const LessonSession& session) { return InTemp(session, ".tst"); }

}  // namespace tavimo::host
