// The sentence around a place in a script, Chinese or English.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tavimo::host {

// Finds the sentences around places that rise, in one walk through the text: a script may be ten megabytes without a line
// end or a full stop.
class SentenceReader {
 public:
  // The text, in GBK, must outlive the reader.
  explicit SentenceReader(std::string_view gbk) : gbk_(gbk) {}

  // The text from the end of the sentence before to the end of the one at the place, in UTF-8: blanks in a row and the
  // line ends in it are one blank, and the "@@" of a paragraph is left out. A line end ends a sentence too, unless the
  // next line goes on with a small letter. Of a very long sentence what stands around the place, with "…" where it was
  // cut. REQUIRES: the place is not before the one asked for last.
  [[nodiscard]] std::string Around(std::size_t place);

 private:
  void ReadNextLine();
  void ReadNextSentence();

  std::string_view gbk_;
  std::size_t lineEnd_ = 0;
  std::size_t begin_ = 0;  // of the sentence
  std::size_t end_ = 0;
  std::size_t cut_ = 0;  // where what is shown of a very long one begins
};

// A piece of a text in UTF-8; bytes that are no character become U+FFFD.
[[nodiscard]] std::string Utf8FromGbkText(std::string_view gbk);

// How many bytes the character at a place has, 1 or 2. REQUIRES: the place is where a character begins.
[[nodiscard]] std::size_t GbkCharacterBytes(std::string_view gbk, std::size_t place);

}  // namespace tavimo::host
