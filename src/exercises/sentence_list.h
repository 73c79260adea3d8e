// The lines of the host's list of items.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "exercises/question_record.h"
#include "platform/windows.h"

namespace tavimo::exercises {

// Some lines of the list at a time, in one block: a bank has many thousands, each a few bytes long.
class ListPiece {
 public:
  [[nodiscard]] bool IsFull() const noexcept { return count_ == kMostLines; }

  // Puts the line of an item behind the others; an item of an unknown type has none. REQUIRES: not IsFull().
  void Add(const QuestionRecord& record) noexcept;

  // Valid until the next call.
  [[nodiscard]] platform::ListLines Lines() const noexcept {
    return {text_.data(), end_, std::span(starts_).first(count_)};
  }

  void Clear() noexcept { count_ = end_ = 0; }

 private:
  static constexpr std::size_t kMostLines = 512;
  static constexpr std::size_t kLineRoom = 16;  // "No.-2147483648" and its zero
  using Line = std::array<char, kLineRoom>;

  void AddNumbered(std::int32_t number) noexcept;
  void Append(const Line& line, std::size_t byteCount) noexcept;

  std::array<char, kMostLines * kLineRoom> text_;
  std::array<std::uint32_t, kMostLines> starts_;
  std::size_t end_ = 0;  // of the text
  std::size_t count_ = 0;
  Line numbered_{'N', 'o', '.'};
  std::size_t numberedBytes_ = 0;  // with the zero
  std::int32_t tens_ = -1;         // of the number in the line; -1: of none that may be used again
};

}  // namespace tavimo::exercises
