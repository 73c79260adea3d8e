#include "sentences/bookmarks.h"

#include <algorithm>
#include <cstdio>

#include "platform/text.h"

namespace tavimo::sentences {

namespace {

constexpr std::size_t kLabelOffset = 4;
constexpr std::size_t kLabelBytes = kBookMarkBytes - kLabelOffset;
constexpr std::int32_t kLastSlot = static_cast<std::int32_t>(kBookMarkCount) - 1;

}  // namespace

std::int32_t CountBookMarks(const BookMarkTable& table) noexcept {
  const auto empty = std::find_if(table.records.begin(), table.records.end(),
                                  [](const BookMarkRecord& record) { return record.TimeMs() == 0; });
  return static_cast<std::int32_t>(empty - table.records.begin());
}

bool AddBookMark(BookMarkTable& table, std::uint32_t timeMs, std::string_view label) noexcept {
  const auto slot = static_cast<std::size_t>(CountBookMarks(table));
  if (slot == kBookMarkCount) return false;
  auto& bytes = table.records[slot].bytes;
  core::WriteU32(bytes.data(), timeMs);
  const std::size_t length = platform::WholeCharacterBytes(label, kLongestLabel);
  std::copy_n(label.begin(), length, bytes.begin() + kLabelOffset);
  bytes[kLabelOffset + length] = 0;
  return true;
}

void DeleteBookMark(BookMarkTable& table, std::int32_t index) noexcept {
  if (index < 0) return;
  const auto slot = table.records.begin() + std::min(index, kLastSlot);
  std::copy(slot + 1, table.records.end(), slot);
  table.records.back().Empty();
}

std::uint32_t BookMarkTime(const BookMarkTable& table, std::int32_t index) noexcept {
  return index < 0 || index > kLastSlot ? 0 : table.records[static_cast<std::size_t>(index)].TimeMs();
}

bool ReachesPast(const BookMarkTable& table, std::int32_t totalMs) noexcept {
  const auto end = table.records.begin() + CountBookMarks(table);
  return std::any_of(table.records.begin(), end, [totalMs](const BookMarkRecord& record) {
    return static_cast<std::int32_t>(record.TimeMs()) >= totalMs;
  });
}

BookMarkLine LineOf(const BookMarkRecord& record) noexcept {
  constexpr std::uint32_t kMinuteMs = 60000;
  const auto label = record.bytes.begin() + kLabelOffset;
  // A damaged file may hold a label without its zero.
  const auto length = static_cast<int>(std::find(label, label + kLabelBytes, 0) - label);
  BookMarkLine line{};
  std::snprintf(line.data(), line.size(), "%02u:%02u   %.*s", record.TimeMs() / kMinuteMs,
                record.TimeMs() % kMinuteMs / 1000, length, reinterpret_cast<const char*>(&*label));
  return line;
}

}  // namespace tavimo::sentences
