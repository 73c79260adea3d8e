#include "exercises/question_index.h"

#include <algorithm>
#include <limits>

namespace tavimo::exercises {

std::span<const QuestionRecordBytes> RecordReader::NextPiece() noexcept {
  const std::int64_t got = index_.Read(piece_.data(), static_cast<std::int64_t>(sizeof piece_));
  return std::span(piece_).first(static_cast<std::size_t>(std::max<std::int64_t>(got, 0)) / kQuestionRecordBytes);
}

bool ReadRecordAt(platform::FileStream& index, std::int32_t recordIndex, QuestionRecord& record) noexcept {
  constexpr auto kBytes = static_cast<std::int64_t>(kQuestionRecordBytes);
  QuestionRecordBytes bytes;
  if (index.Seek(recordIndex * kBytes, platform::SeekFrom::Start) < 0) return false;
  if (index.Read(bytes.data(), kBytes) != kBytes) return false;
  record = ReadQuestionRecord(bytes.data());
  return true;
}

bool ReadArticleRecord(platform::FileStream& index, std::int32_t recordIndex, QuestionRecord& record) noexcept {
  if (!ReadRecordAt(index, recordIndex, record)) return false;
  return IsArticle(record) || (ReadRecordAt(index, record.passageIndex, record) && IsArticle(record));
}

std::int32_t ReadAnswers(platform::FileStream& index, std::int32_t* answers, std::int32_t room,
                         ListedItems& items) noexcept {
  constexpr std::int32_t kMostCounted = std::numeric_limits<std::int32_t>::max() - RecordReader::kMostRecords;
  items.Begin(index);
  RecordReader reader(index);
  std::int32_t count = 0;
  for (auto piece = reader.NextPiece(); !piece.empty() && count < kMostCounted; piece = reader.NextPiece()) {
    const auto taken = answers == nullptr ? 0 : std::clamp<std::int64_t>(room - count, 0, std::ssize(piece));
    for (const QuestionRecordBytes& bytes : piece.first(static_cast<std::size_t>(taken))) {
      const QuestionRecord record = ReadQuestionRecord(bytes.data());
      *answers++ = IsArticle(record) ? -1 : NormalisedAnswer(record);
    }
    items.Keep(piece);
    count += static_cast<std::int32_t>(piece.size());
  }
  return count;
}

}  // namespace tavimo::exercises
