// What the host's list shows of each item of an open bank, kept from the reading that gave the answers, so that filling
// the list costs no second one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "exercises/question_record.h"
#include "platform/files.h"

namespace tavimo::exercises {

struct ListedItem {
  std::int32_t type;
  std::int32_t ordinal;
};

constexpr ListedItem ListedItemOf(const QuestionRecordBytes& bytes) noexcept {
  const QuestionRecord record = ReadQuestionRecord(bytes.data());
  return {record.type, record.ordinal};
}

class ListedItems {
 public:
  // Begins anew for an index as it is now. Keeps nothing of one that is too large or cannot be told from a later one.
  void Begin(const platform::FileStream& index) noexcept;

  // The next records, in the order of the index.
  void Keep(std::span<const QuestionRecordBytes> records) noexcept;

  // Before the index changes, or when it closes.
  void Forget() noexcept { *this = {}; }

  // Whether these are all items of the index as it is now. Another program may have written to it since.
  [[nodiscard]] bool AreThoseOf(const platform::FileStream& index) const noexcept;

  // The items from a place on, at most so many; none at the end.
  [[nodiscard]] std::span<const ListedItem> Piece(std::size_t first, std::size_t most) const noexcept;

 private:
  std::unique_ptr<ListedItem[]> items_;
  std::size_t room_ = 0;
  std::size_t count_ = 0;
  std::int64_t indexBytes_ = -1;
  platform::FileTime indexTime_;
};

}  // namespace tavimo::exercises
