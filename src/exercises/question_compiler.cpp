#include "exercises/question_compiler.h"

#include <optional>

#include "exercises/exercise_paths.h"
#include "exercises/output_file.h"
#include "exercises/record_header.h"
#include "platform/files.h"
#include "sentences/study_file.h"

namespace tavimo::exercises {

using platform::FileStream;
using platform::OpenMode;

namespace {

bool IsMarked(std::string_view line) noexcept { return line.starts_with("##") || line.starts_with("$$"); }

// 0 to 25; nothing for what is no letter.
std::optional<std::int32_t> LetterIndex(char letter) noexcept {
  if (letter >= 'A' && letter <= 'Z') return letter - 'A';
  if (letter >= 'a' && letter <= 'z') return letter - 'a';
  return std::nullopt;
}

// Each step takes the line in hand, or the next one, and is false after a fault, which is then in the report.
class Compiler {
 public:
  Compiler(ScriptLines& lines, OutputFile& index, OutputFile& texts, CompileReport& report) noexcept
      : lines_(lines), index_(index), texts_(texts), report_(report) {}

  [[nodiscard]] bool CompileRecord() noexcept {
    QuestionRecord record;
    if (!TakeHeader(record) || !NextLine(CompileFault::ScriptEnds) || !CopyText(record)) return false;
    const bool isPassage = record.type == kPassage;
    if (!(isPassage ? CheckPassageEnd() : TakeChoices(record) && TakeAnswer(record))) return false;
    const QuestionRecordBytes bytes = WriteQuestionRecord(record);
    index_.Add({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    ++recordCount_;
    return true;
  }

 private:
  bool Fail(CompileFault fault) noexcept {
    report_.fault = fault;
    report_.line = line_;
    report_.lineNumber = lines_.LineNumber();
    return false;
  }

  bool NextLine(CompileFault faultAtEnd) noexcept {
    line_ = lines_.Next();
    return !line_.empty() || Fail(faultAtEnd);
  }

  bool TakeHeader(QuestionRecord& record) noexcept {
    if (!NextLine(CompileFault::ScriptEnds)) return false;
    const std::optional<RecordHeader> header = ParseRecordHeader(line_);
    if (!header) return Fail(CompileFault::NoHeader);
    const bool isPassage = header->type == kPassage;
    const std::int32_t expected = isPassage ? lastNumber_ : lastNumber_ + 1;
    if (isPassage) lastPassage_ = recordCount_;
    if (header->number != 0 && header->number != static_cast<std::uint32_t>(expected)) {
      report_.expectedNumber = expected;
      return Fail(CompileFault::WrongNumber);
    }
    lastNumber_ = expected;
    record.type = header->type;
    record.ordinal = expected - 1;
    record.textOffset = wzBytes_;
    if (header->type == kPassageQuestion) record.passageIndex = lastPassage_;
    return true;
  }

  void AddText(std::string_view text, QuestionRecord& record) noexcept {
    texts_.Add(text);
    const auto byteCount = static_cast<std::uint32_t>(text.size());
    wzBytes_ += byteCount;
    record.textLength += byteCount;
  }

  // Up to the line in hand that begins with a mark.
  bool CopyText(QuestionRecord& record) noexcept {
    while (!IsMarked(line_)) {
      AddText(line_, record);
      if (!NextLine(CompileFault::ScriptEnds)) return false;
    }
    return true;
  }

  bool CheckPassageEnd() noexcept { return line_.starts_with("$$") || Fail(CompileFault::NoAnswer); }

  bool TakeChoices(QuestionRecord& record) noexcept {
    AddText(std::string_view("\0", 1), record);
    if (!line_.starts_with("##XZ")) return Fail(CompileFault::NoChoiceMarker);
    return NextLine(CompileFault::ScriptEndsAfterMarker) && CopyText(record);
  }

  bool TakeAnswer(QuestionRecord& record) noexcept {
    const bool isAnswer = line_.starts_with("$$") && line_.size() > 2;
    const std::optional<std::int32_t> letter = isAnswer ? LetterIndex(line_[2]) : std::nullopt;
    if (!letter) return Fail(CompileFault::NoAnswer);
    record.answer = *letter;
    return true;
  }

  ScriptLines& lines_;
  OutputFile& index_;
  OutputFile& texts_;
  CompileReport& report_;
  std::string_view line_;  // in hand
  std::int32_t lastNumber_ = 0;
  std::int32_t lastPassage_ = 0;  // by its record; a passage question before any passage belongs to record 0
  std::int32_t recordCount_ = 0;
  std::uint32_t wzBytes_ = 0;
};

struct CompilePaths {
  ExercisePath study;
  ExercisePath script;
  ExercisePath index;
  ExercisePath texts;
};

bool DerivePaths(std::string_view studyPath, std::string_view scriptPath, CompilePaths& paths) noexcept {
  return paths.study.Assign(studyPath) && paths.script.Assign(scriptPath) &&
         PathInTemp(scriptPath, ".tst", paths.index) && PathInTemp(scriptPath, ".wz", paths.texts);
}

// An author may keep a script in "temp", and under any name: creating the outputs must not empty it.
bool IsInput(const ExercisePath& output, const CompilePaths& paths) noexcept {
  return platform::IsSameFile(output.CString(), paths.script.CString()) ||
         platform::IsSameFile(output.CString(), paths.study.CString());
}

bool CreateOutputs(const CompilePaths& paths, OutputFile& index, OutputFile& texts) noexcept {
  return !IsInput(paths.index, paths) && !IsInput(paths.texts, paths) && index.Create(paths.index.CString()) &&
         texts.Create(paths.texts.CString());
}

}  // namespace

CompileReport CompileQuestions(std::string_view studyPath, std::string_view scriptPath, CompilerSpace& space) noexcept {
  CompileReport report;
  report.fault = CompileFault::CannotRead;
  CompilePaths paths;
  if (!DerivePaths(studyPath, scriptPath, paths)) return report;
  FileStream script = FileStream::Open(paths.script.CString(), OpenMode::Read);
  if (!script.IsOpen()) return report;
  report.sentenceCount = sentences::CountStarts(FileStream::Open(paths.study.CString(), OpenMode::Read));
  if (report.sentenceCount < 0) return report;
  OutputFile index(space.records);
  OutputFile texts(space.texts);
  report.fault = CompileFault::CannotCreate;
  if (!CreateOutputs(paths, index, texts)) return report;
  report.fault = CompileFault::None;
  ScriptLines lines(script, space.script);
  Compiler compiler(lines, index, texts, report);
  for (std::int32_t i = 0; i < report.sentenceCount && compiler.CompileRecord();) ++i;
  report.isTextWhole = texts.Finish();
  return report;
}

}  // namespace tavimo::exercises
