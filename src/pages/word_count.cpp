#include "pages/word_count.h"

#include "pages/byte_kinds.h"

namespace tavimo::pages {

namespace {

// The rule: IsLetter or IsDigit. Without short cuts, so that the compiler counts many bytes at once.
constexpr std::uint8_t WordBit(std::uint8_t byte) noexcept {
  const auto isLetter = static_cast<std::uint8_t>(IsLetter(byte));
  const auto isDigit = static_cast<std::uint8_t>(IsDigit(byte));
  return isLetter | isDigit;
}

}  // namespace

// The rule: a word begins at each word byte behind one that is none. Every second edge between the two kinds is such a
// beginning.
void WordCounter::Add(std::span<const std::uint8_t> text) noexcept {
  if (text.empty()) return;
  const std::uint8_t* byte = text.data();
  std::uint32_t edges = WordBit(byte[0]) ^ WordBit(last_);
  for (std::size_t i = 1; i < text.size(); ++i)
    edges += static_cast<std::uint8_t>(WordBit(byte[i]) ^ WordBit(byte[i - 1]));
  edges_ += edges;
  last_ = text.back();
}

}  // namespace tavimo::pages
