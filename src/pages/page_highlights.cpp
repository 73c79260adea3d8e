#include "pages/page_highlights.h"

namespace tavimo::pages {

namespace {
constexpr unsigned kStateBits = 3;
}

PageHighlights::PageHighlights(std::int32_t firstWord, std::int32_t wordCount) noexcept
    : firstWord_(firstWord),
      wordCount_(wordCount),
      byteCount_(static_cast<std::size_t>(wordCount / kWordsPerByte + (wordCount % kWordsPerByte != 0 ? 1 : 0) +
                                          (firstWord % kWordsPerByte != 0 ? 1 : 0))) {}

PageHighlights::Slot PageHighlights::SlotOf(std::int32_t wordOnPage) const noexcept {
  const std::int32_t place = firstWord_ % kWordsPerByte + wordOnPage;
  return {static_cast<std::size_t>(place / kWordsPerByte), 6 - 2 * (place % kWordsPerByte)};
}

std::uint8_t PageHighlights::StateOf(std::int32_t wordOnPage) const noexcept {
  const Slot slot = SlotOf(wordOnPage);
  return slot.byte < byteCount_ ? static_cast<std::uint8_t>(bytes_[slot.byte] >> slot.shift & kStateBits)
                                : std::uint8_t{0};
}

void PageHighlights::SetState(std::int32_t wordOnPage, std::uint8_t state) noexcept {
  const Slot slot = SlotOf(wordOnPage);
  if (slot.byte >= byteCount_) return;
  const unsigned others = bytes_[slot.byte] & ~(kStateBits << slot.shift);
  bytes_[slot.byte] = static_cast<std::uint8_t>(others | (state & kStateBits) << slot.shift);
}

}  // namespace tavimo::pages
