#include "exercises/listed_items.h"

#include <algorithm>
#include <new>

namespace tavimo::exercises {

namespace {
constexpr std::int64_t kMostItems = 1 << 20;  // 8 MiB; whoever has more waits for the second reading
}  // namespace

void ListedItems::Begin(const platform::FileStream& index) noexcept {
  count_ = 0;
  indexBytes_ = -1;
  const std::int64_t byteCount = index.Length();
  const std::int64_t itemCount = byteCount / static_cast<std::int64_t>(kQuestionRecordBytes);
  if (itemCount < 1 || itemCount > kMostItems || !index.GetLastWriteTime(indexTime_)) return;
  if (room_ < static_cast<std::size_t>(itemCount)) {
    room_ = static_cast<std::size_t>(itemCount);
    items_.reset(new (std::nothrow) ListedItem[room_]);
    if (items_ == nullptr) room_ = 0;
  }
  if (room_ > 0) indexBytes_ = byteCount;
}

void ListedItems::Keep(std::span<const QuestionRecordBytes> records) noexcept {
  const std::size_t kept = std::min(records.size(), room_ - count_);
  std::ranges::transform(records.first(kept), items_.get() + count_, ListedItemOf);
  count_ += kept;
}

bool ListedItems::AreThoseOf(const platform::FileStream& index) const noexcept {
  platform::FileTime time;
  return indexBytes_ >= 0 && count_ == static_cast<std::size_t>(indexBytes_) / kQuestionRecordBytes &&
         index.Length() == indexBytes_ && index.GetLastWriteTime(time) && time == indexTime_;
}

std::span<const ListedItem> ListedItems::Piece(std::size_t first, std::size_t most) const noexcept {
  if (first >= count_) return {};
  return {items_.get() + first, std::min(most, count_ - first)};
}

}  // namespace tavimo::exercises
