// Reading a question index: records back to back, the item of sentence i at 52 x i. 1 to 51 bytes at its end are no
// record.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "exercises/listed_items.h"
#include "exercises/question_record.h"
#include "platform/files.h"

namespace tavimo::exercises {

// Reads an index from its start to its end, in pieces large enough that the file system does not count.
class RecordReader {
 public:
  static constexpr std::size_t kMostRecords = 2520;  // of a piece: just below 128 KiB

  explicit RecordReader(platform::FileStream& index) noexcept : index_(index) {
    index_.Seek(0, platform::SeekFrom::Start);
  }

  // The next whole records, at least one, valid until the next call; none at the end.
  [[nodiscard]] std::span<const QuestionRecordBytes> NextPiece() noexcept;

 private:
  platform::FileStream& index_;
  std::array<QuestionRecordBytes, kMostRecords> piece_;
};

// Reads one record. False, and the record stays as it was, for an index outside the file.
[[nodiscard]] bool ReadRecordAt(platform::FileStream& index, std::int32_t recordIndex, QuestionRecord& record) noexcept;

// Reads the passage or dialogue at an index; at that of a question the one it belongs to. False when there is none.
[[nodiscard]] bool ReadArticleRecord(platform::FileStream& index, std::int32_t recordIndex,
                                     QuestionRecord& record) noexcept;

// The number of records. Stores the answer of each into answers (null allowed), of the first room ones at most: 0 for
// 'A', -1 for a passage or dialogue. What the list shows of the items goes into items.
[[nodiscard]] std::int32_t ReadAnswers(platform::FileStream& index, std::int32_t* answers, std::int32_t room,
                                       ListedItems& items) noexcept;

}  // namespace tavimo::exercises
