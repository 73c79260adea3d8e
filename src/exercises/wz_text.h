// The texts of a wz file as the host gets them. A record says where its text lies; one that points outside the file has
// none.
#pragma once

#include <cstdint>

#include "exercises/question_record.h"
#include "platform/files.h"

namespace tavimo::exercises {

// A stretch of a wz file; empty when there is no text.
struct TextStretch {
  std::int64_t offset = 0;
  std::int64_t byteCount = 0;
};

// All of a record's text.
[[nodiscard]] TextStretch WholeText(const platform::FileStream& wz, const QuestionRecord& record) noexcept;

// The text before its first zero byte, and the text behind it: a question and its choices. Without a zero byte all of
// it is the question.
[[nodiscard]] TextStretch QuestionPart(platform::FileStream& wz, const QuestionRecord& record) noexcept;
[[nodiscard]] TextStretch ChoicePart(platform::FileStream& wz, const QuestionRecord& record) noexcept;

// Copies a stretch with curly quotes made straight and a terminating zero; text has room for byteCount + 1 bytes.
// Returns its length in characters.
std::int32_t CopyText(platform::FileStream& wz, const TextStretch& stretch, char* text) noexcept;

}  // namespace tavimo::exercises
