// Compiles a question script into a question index and a wz file, one item for each sentence of a recording. What the
// author is told about a fault is compiler_messages.h.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "exercises/question_record.h"
#include "exercises/script_lines.h"

namespace tavimo::exercises {

enum class CompileFault {
  None,
  CannotRead,             // the script, or the study file
  CannotCreate,           // an output
  ScriptEnds,             // where a header line or a line of text is due
  ScriptEndsAfterMarker,  // right behind the line that begins the choices
  NoHeader,
  WrongNumber,
  NoChoiceMarker,
  NoAnswer,
};

struct CompileReport {
  CompileFault fault = CompileFault::None;
  std::uint32_t lineNumber = 0;     // of the line at fault
  std::string_view line;            // as read, in the work space
  std::int32_t expectedNumber = 0;  // for WrongNumber
  std::int32_t sentenceCount = -1;  // of the study file, and so of the records of a whole index
  bool isTextWhole = true;          // false: part of the texts did not reach the wz file; compiling went on
};

struct CompilerSpace {
  ScriptLines::Piece script;
  std::array<char, 256 * 1024> texts;
  std::array<char, 1024 * kQuestionRecordBytes> records;
};

// The outputs lie in the folder "temp" under the script's name. Those of an earlier compilation are emptied first, as
// soon as the inputs are open, and a script at fault leaves what was compiled until there.
[[nodiscard]] CompileReport CompileQuestions(std::string_view studyPath, std::string_view scriptPath,
                                             CompilerSpace& space) noexcept;

}  // namespace tavimo::exercises
