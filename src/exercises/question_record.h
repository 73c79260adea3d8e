// One record of a question index: what kind of item it is, its answer, and where its text lies in the wz file.
//
//   offset  size  field (little-endian)
//        0     4  type: 0 question, 1 long dialogue, 2 passage, 3 passage question
//        4     4  answer: 0 for 'A' to 25 for 'Z'
//        8     4  offset of the text in the wz file, unsigned
//       12     4  length of the text in bytes, unsigned
//       16     4  index of the passage that a passage question belongs to
//       20    16  0
//       36     4  number of the question less 1; of a passage that of the question before it
//       40    12  0
//
// Records are read from files that anything may have damaged: every field may hold any value.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/little_endian.h"

namespace tavimo::exercises {

inline constexpr std::size_t kQuestionRecordBytes = 52;
using QuestionRecordBytes = std::array<std::uint8_t, kQuestionRecordBytes>;

inline constexpr std::int32_t kQuestion = 0;
inline constexpr std::int32_t kLongDialogue = 1;  // the compiler makes none; older indexes have them
inline constexpr std::int32_t kPassage = 2;
inline constexpr std::int32_t kPassageQuestion = 3;

struct QuestionRecord {
  std::int32_t type = kQuestion;
  std::int32_t answer = 0;
  std::uint32_t textOffset = 0;
  std::uint32_t textLength = 0;
  std::int32_t passageIndex = 0;
  std::int32_t ordinal = 0;
};

constexpr bool IsArticle(const QuestionRecord& record) noexcept {
  return record.type == kLongDialogue || record.type == kPassage;
}

// Indexes that counted a lower-case letter from 'A' hold 32 to 57: the same letters.
constexpr std::int32_t NormalisedAnswer(const QuestionRecord& record) noexcept {
  return record.answer < 26 ? record.answer : record.answer - 32;
}

constexpr QuestionRecord ReadQuestionRecord(const std::uint8_t* bytes) noexcept {
  const auto signedAt = [bytes](std::size_t offset) {
    return static_cast<std::int32_t>(core::ReadU32(bytes + offset));
  };
  return {signedAt(0), signedAt(4), core::ReadU32(bytes + 8), core::ReadU32(bytes + 12), signedAt(16), signedAt(36)};
}

constexpr QuestionRecordBytes WriteQuestionRecord(const QuestionRecord& record) noexcept {
  QuestionRecordBytes bytes{};
  core::WriteU32(bytes.data(), static_cast<std::uint32_t>(record.type));
  core::WriteU32(bytes.data() + 4, static_cast<std::uint32_t>(record.answer));
  core::WriteU32(bytes.data() + 8, record.textOffset);
  core::WriteU32(bytes.data() + 12, record.textLength);
  core::WriteU32(bytes.data() + 16, static_cast<std::uint32_t>(record.passageIndex));
  core::WriteU32(bytes.data() + 36, static_cast<std::uint32_t>(record.ordinal));
  return bytes;
}

}  // namespace tavimo::exercises
