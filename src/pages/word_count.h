// Counting the words of a script, piece by piece at memory speed.
#pragma once

#include <cstdint>
#include <span>

namespace tavimo::pages {

// Counts the edges between word bytes and others; a text begins outside a word.
class WordCounter {
 public:
  void Add(std::span<const std::uint8_t> text) noexcept;

  // Words begun, one that the end of the text cuts included.
  [[nodiscard]] std::uint32_t Begun() const noexcept { return edges_ / 2 + edges_ % 2; }

  // Words that another byte follows.
  [[nodiscard]] std::uint32_t Closed() const noexcept { return edges_ / 2; }

 private:
  std::uint32_t edges_ = 0;
  std::uint8_t last_ = 0;
};

// Maximal runs of word bytes.
[[nodiscard]] inline std::uint32_t CountWords(std::span<const std::uint8_t> text) noexcept {
  WordCounter words;
  words.Add(text);
  return words.Begun();
}

}  // namespace tavimo::pages
