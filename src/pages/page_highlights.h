// The highlight states of the words of one page: 2 bits a word, as they stand in the highlight file. 0 is plain, anything
// else is drawn in red. Where the bytes come from and go to is the highlight file's business.
//
//   word  byte     bits
//   4 k   k        7, 6
//   4 k+1 k        5, 4
//   4 k+2 k        3, 2
//   4 k+3 k        1, 0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "pages/page_text.h"

namespace tavimo::pages {

// A page of the most bytes has no more: a word is followed by at least one byte.
inline constexpr std::int32_t kMaxWordsCounted = kMaxPageBytes / 2;

class PageHighlights {
 public:
  PageHighlights() noexcept = default;

  // All plain. REQUIRES: firstWord >= 0, 0 <= wordCount <= kMaxWordsCounted.
  PageHighlights(std::int32_t firstWord, std::int32_t wordCount) noexcept;

  [[nodiscard]] std::int32_t FirstWord() const noexcept { return firstWord_; }
  [[nodiscard]] std::int32_t WordCount() const noexcept { return wordCount_; }

  // Where the bytes lie in the highlight file, and they.
  [[nodiscard]] std::int64_t FileOffset() const noexcept { return firstWord_ / kWordsPerByte; }
  [[nodiscard]] std::span<std::uint8_t> Bytes() noexcept { return {bytes_.data(), byteCount_}; }
  [[nodiscard]] std::span<const std::uint8_t> Bytes() const noexcept { return {bytes_.data(), byteCount_}; }

  // By the word's place on the page, from 0. Words behind the bytes are plain and are not kept: lines that cut words count
  // some of them twice. REQUIRES: wordOnPage >= 0.
  [[nodiscard]] std::uint8_t StateOf(std::int32_t wordOnPage) const noexcept;
  void SetState(std::int32_t wordOnPage, std::uint8_t state) noexcept;

 private:
  static constexpr std::int32_t kWordsPerByte = 4;
  struct Slot {
    std::size_t byte;
    int shift;
  };
  [[nodiscard]] Slot SlotOf(std::int32_t wordOnPage) const noexcept;

  std::int32_t firstWord_ = 0;
  std::int32_t wordCount_ = 0;
  std::size_t byteCount_ = 0;
  std::array<std::uint8_t, kMaxWordsCounted / kWordsPerByte + 2> bytes_{};
};

}  // namespace tavimo::pages
