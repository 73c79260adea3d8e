// The words that the learner marked, and their marks carried to other pages of the same text. The engine numbers a word
// that a line's or a page's end cuts more than once, so that on other pages the same words have other numbers.
#pragma once

#include <cstddef>
#include <vector>

#include "paged_text.h"

namespace tavimo::host {

// Of words that share a number, and so a mark, those of the learner's own places are meant; where none is, rather a word
// too many than one lost. REQUIRES: IsSound.
[[nodiscard]] std::vector<ScriptWord> MarkedWords(const PagedText& paged, const Marks& marks, const Places& own);

[[nodiscard]] Places PlacesOf(const std::vector<ScriptWord>& words);

struct MovedMarks {
  Marks marks;                // for the new pages
  Places places;              // of the words that they are for
  std::size_t lostCount = 0;  // words for which the new pages have none
};

// Marks for words on other pages, of at least so many bytes. REQUIRES: IsSound, and places of the same text.
[[nodiscard]] MovedMarks MoveMarks(const Places& words, const PagedText& to, std::size_t byteCount);

}  // namespace tavimo::host
