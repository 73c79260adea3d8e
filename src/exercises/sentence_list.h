// The lines of the host's list of items.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "core/little_endian.h"
#include "exercises/listed_items.h"
#include "platform/list_lines.h"

namespace tavimo::exercises {

inline constexpr std::size_t kListLineRoom =
    16;  // "No.-2147483648" with its zero byte, and what one instruction copies

// The lines of numbered items. The rule: the number in decimal. Items are numbered one after another, so nine times of
// ten the last digit alone differs from the line before. The line is kept as two numbers, its first character in the
// lowest byte, because a processor that has just written single bytes waits before it copies them as a whole.
class NumberedLines {
 public:
  // Into the room of a line, of which the rest is overwritten too. The bytes of the line with its zero.
  std::size_t Write(std::int32_t number, char* room) noexcept {
    if (number < 0) return WriteNegative(number, room);
    const auto value = static_cast<std::uint32_t>(number);
    if (value / 10 != tens_) BeginTens(value / 10);
    const std::uint64_t digit = value % 10;
    auto* const bytes = reinterpret_cast<std::uint8_t*>(room);
    core::WriteU64(bytes, low_ + digit * lowUnit_);
    core::WriteU64(bytes + sizeof low_, high_ + digit * highUnit_);
    return byteCount_;
  }

 private:
  static std::size_t WriteNegative(std::int32_t number, char* room) noexcept;
  void BeginTens(std::uint32_t tens) noexcept;
  void PutInFront(std::uint32_t character) noexcept;

  std::uint32_t tens_ = std::numeric_limits<std::uint32_t>::max();  // that the line is of: at first of none
  std::uint64_t low_ = 0;
  std::uint64_t high_ = 0;
  std::uint64_t lowUnit_ = 0;  // what a last digit of 1 adds
  std::uint64_t highUnit_ = 0;
  std::size_t byteCount_ = 0;
};

// The lines of a piece of the list, in one block: a bank has many thousands, each a few bytes long.
class ListPiece {
 public:
  static constexpr std::size_t kMostItems = 2520;

  // An item of an unknown type has no line. Valid until the next call.
  [[nodiscard]] platform::ListLines LinesOf(std::span<const ListedItem> items) noexcept;

 private:
  std::size_t Write(ListedItem item, char* room) noexcept;

  NumberedLines numbered_;
  std::array<char, kMostItems * kListLineRoom> text_;
  std::array<std::uint32_t, kMostItems> starts_;
};

}  // namespace tavimo::exercises
