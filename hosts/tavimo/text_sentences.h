// The sentence around a place in a script, Chinese or English.
#pragma once

#include <cstddef>
#include <string>

namespace tavimo::host {

// The text, in GBK, from the end of the sentence before to the end of the one at the place, in UTF-8: blanks in a row and
// the line ends in it are one blank, and the "@@" of a paragraph is left out. A line end ends a sentence too, unless the
// next line goes on with a small letter.
[[nodiscard]] std::string SentenceAround(const std::string& gbk, std::size_t place);

// A piece of a text in UTF-8; bytes that are no character become U+FFFD.
[[nodiscard]] std::string Utf8FromGbkText(std::string_view gbk);

// How many bytes the character at a place has, 1 or 2. REQUIRES: the place is where a character begins.
[[nodiscard]] std::size_t GbkCharacterBytes(std::string_view gbk, std::size_t place);

}  // namespace tavimo::host
