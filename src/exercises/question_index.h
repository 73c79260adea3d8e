// Reading a question index: records back to back, the item of sentence i at 52 x i. 1 to 51 bytes at its end are no
// record.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "exercises/question_record.h"
#include "platform/files.h"

namespace tavimo::exercises {

// Reads an index from its start to its end, in pieces large enough that the file system does not count.
class RecordReader {
 public:
  explicit RecordReader(platform::FileStream& index) noexcept : index_(index) {
    index_.Seek(0, platform::SeekFrom::Start);
  }

  // False when there is no whole record any more.
  [[nodiscard]] bool Next(QuestionRecord& record) noexcept {
    if (end_ - next_ < kQuestionRecordBytes && !Refill()) return false;
    record = ReadQuestionRecord(piece_.data() + next_);
    next_ += kQuestionRecordBytes;
    return true;
  }

 private:
  bool Refill() noexcept;

  platform::FileStream& index_;
  std::array<std::uint8_t, 1260 * kQuestionRecordBytes> piece_;  // just below 64 KiB
  std::size_t next_ = 0;
  std::size_t end_ = 0;
};

// Reads one record. False, and the record stays as it was, for an index outside the file.
[[nodiscard]] bool ReadRecordAt(platform::FileStream& index, std::int32_t recordIndex, QuestionRecord& record) noexcept;

// Reads the passage or dialogue at an index; at that of a question the one it belongs to. False when there is none.
[[nodiscard]] bool ReadArticleRecord(platform::FileStream& index, std::int32_t recordIndex,
                                     QuestionRecord& record) noexcept;

// The number of records. Stores the answer of each into answers (null allowed), of the first room ones at most: 0 for
// 'A', -1 for a passage or dialogue.
[[nodiscard]] std::int32_t ReadAnswers(platform::FileStream& index, std::int32_t* answers, std::int32_t room) noexcept;

}  // namespace tavimo::exercises
