// What the questions of a lesson are made from, and what the engine makes of it in the working folder: the index
// temp/NAME.tst and the texts temp/NAME.wz. The script and the titles of its passages lie beside the recording, in any
// encoding; the engine gets copies of them in GBK.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "lesson_files.h"
#include "lesson_session.h"
#include "question_bank.h"
#include "question_lint.h"
#include "script_text.h"

namespace tavimo::host {

struct QuestionSource {
  std::optional<std::filesystem::path> script;  // without one that beside the recording
  std::optional<std::string> encoding;
};

// A script, read and checked.
struct CheckedScript {
  ScriptText text;
  LintResult lint;
  std::string lines;  // of "file:line:column: …"; empty where there is nothing to say
  std::size_t faultCount = 0;
};

[[nodiscard]] CheckedScript CheckScript(const std::filesystem::path& script, const std::optional<std::string>& encoding,
                                        std::optional<std::size_t> sentenceCount);

// How many sentences the recording has; a Refusal when it was not cut.
[[nodiscard]] std::size_t SentenceCount(LessonSession& session);

// Compiles; what the check finds goes to standard error. Returns the number of records. A Refusal after a fault: what
// was compiled before stays.
std::size_t CompileQuestions(LessonSession& session, const QuestionSource& source);

// The exercises, compiled anew where script or sentences have changed, with their titles up to date.
[[nodiscard]] std::vector<Exercise> LoadExercises(LessonSession& session, const QuestionSource& source);

// The index as the session's engine finds it; the texts lie beside it.
[[nodiscard]] std::filesystem::path QuestionIndex(const LessonSession& session);

}  // namespace tavimo::host
