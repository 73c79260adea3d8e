// Editing the bookmark table in memory. The list is the run of slots up to the first empty one, in the order of adding;
// slots behind it keep their old bytes, and come back when the list grows to them.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "sentences/bookmark_table.h"

namespace tavimo::sentences {

inline constexpr std::size_t kLongestLabel = 11;

// The length of the list, 0 to 20.
[[nodiscard]] std::int32_t CountBookMarks(const BookMarkTable& table) noexcept;

// Fills the first empty slot; a label of more than 11 bytes is cut before the character that does not fit. False when
// all slots are taken. A time of 0 leaves the slot empty.
[[nodiscard]] bool AddBookMark(BookMarkTable& table, std::uint32_t timeMs, std::string_view label) noexcept;

// Moves the slots behind index down by one and empties the last. An index of 19 or more empties the last slot alone, a
// negative one changes nothing.
void DeleteBookMark(BookMarkTable& table, std::int32_t index) noexcept;

// The stored time of a slot, also behind the list; 0 outside the table.
[[nodiscard]] std::uint32_t BookMarkTime(const BookMarkTable& table, std::int32_t index) noexcept;

// Whether a bookmark of the list lies at or behind the end of the recording. Times of 2^31 and more count as negative.
[[nodiscard]] bool ReachesPast(const BookMarkTable& table, std::int32_t totalMs) noexcept;

// "mm:ss", three blanks and the label, zero-terminated. Minutes have two digits at least.
using BookMarkLine = std::array<char, 40>;
[[nodiscard]] BookMarkLine LineOf(const BookMarkRecord& record) noexcept;

}  // namespace tavimo::sentences
