// The table of 20 bookmarks that a study file begins with, kept in memory in the file's own form.
//
//   offset  size  field of one bookmark
//        0     4  time in milliseconds, unsigned, little-endian; 0 marks an empty slot
//        4    12  label: zero-terminated GBK text of at most 11 bytes; what stands behind the zero is kept as it is
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/little_endian.h"

namespace tavimo::sentences {

inline constexpr std::size_t kBookMarkCount = 20;
inline constexpr std::size_t kBookMarkBytes = 16;
inline constexpr std::size_t kBookMarkTableBytes = kBookMarkCount * kBookMarkBytes;

struct BookMarkRecord {
  std::array<std::uint8_t, kBookMarkBytes> bytes{};

  [[nodiscard]] std::uint32_t TimeMs() const noexcept { return core::ReadU32(bytes.data()); }
  // Emptying leaves the label: hosts see it again when they read the file themselves.
  void Empty() noexcept { core::WriteU32(bytes.data(), 0); }
};
static_assert(sizeof(BookMarkRecord) == kBookMarkBytes);

struct BookMarkTable {
  std::array<BookMarkRecord, kBookMarkCount> records{};

  void Empty() noexcept {
    for (BookMarkRecord& record : records) record.Empty();
  }
  // Any slot counts, also one behind the first empty slot: the table is stored as a whole.
  [[nodiscard]] bool HasAnyTime() const noexcept {
    return std::any_of(records.begin(), records.end(), [](const auto& record) { return record.TimeMs() != 0; });
  }
  [[nodiscard]] std::span<std::uint8_t> Bytes() noexcept { return {records.data()->bytes.data(), kBookMarkTableBytes}; }
  [[nodiscard]] std::span<const std::uint8_t> Bytes() const noexcept {
    return {records.data()->bytes.data(), kBookMarkTableBytes};
  }
};
static_assert(sizeof(BookMarkTable) == kBookMarkTableBytes);

}  // namespace tavimo::sentences
