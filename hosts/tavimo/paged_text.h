// A script's text with the places where its pages and lines begin, and the words on them by the rules that the engine
// numbers them by. Nothing here needs the script to be open.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tavimo.h"

namespace tavimo::host {

struct PagedText {
  std::string text;                     // GBK, CR LF
  std::vector<VcPageIndexEntry> pages;  // one more than there are
  std::vector<VcPageIndexEntry> lines;  // the same, of pages of one line: where lines begin

  [[nodiscard]] int PageCount() const { return static_cast<int>(pages.size()) - 1; }
  [[nodiscard]] int PageOf(std::size_t place) const;  // from 0

  // Whether pages and lines rise from the text's start to its end; anything else is a damaged file.
  [[nodiscard]] bool IsSound() const;
};

// Where words begin in the text.
using Places = std::set<std::size_t>;

// A run of letters and digits on one line. A word that a line's end cuts has a piece on each of two lines, and each piece
// has a number of its own.
struct WordPiece {
  std::size_t start = 0;  // in the text
  std::size_t length = 0;
  std::optional<std::size_t> number;  // none: the engine keeps no mark for it
};

// The bytes of a highlight file: two bits a piece, the first piece in the highest bits; 0 is no mark, and so is what is
// behind the last byte. As the engine does with the file, setting a mark there lengthens them.
using Marks = std::vector<std::uint8_t>;
[[nodiscard]] std::uint8_t MarkOf(const Marks& marks, const WordPiece& piece);
enum class Mark : std::uint8_t { Off, On };                     // as the engine's clicks write them
void SetMark(Marks& marks, const WordPiece& piece, Mark mark);  // nothing where the piece has no number

struct TextLine {
  std::size_t start = 0;
  std::size_t length = 0;
};

// The lines of a page, from 0, as the engine's pages of one line tell them. REQUIRES: IsSound.
[[nodiscard]] std::vector<TextLine> LinesOfPage(const PagedText& paged, int page);

// The numbers that the pieces on a page have, line by line. The page file counts a word that a line's end cuts once, so
// that a page may have more pieces than its bytes of the highlight file: the last ones have none.
class PageNumbers {
 public:
  PageNumbers(const PagedText& paged, int page);

  [[nodiscard]] std::optional<std::size_t> Next();

 private:
  std::size_t next_;
  std::size_t end_;
};

// The pieces of words on a line.
[[nodiscard]] std::vector<WordPiece> FindPieces(const std::string& text, const TextLine& line, PageNumbers& numbers);

// One word of the text with all its pieces.
struct ScriptWord {
  int page = 0;  // of its first piece, from 0
  std::size_t start = 0;
  std::size_t length = 0;
  std::vector<WordPiece> pieces;
};

// Visits the words in the order of the text. REQUIRES: IsSound.
void ForEachWord(const PagedText& paged, const std::function<void(const ScriptWord&)>& visit);

// Of the marks of a word's pieces the highest: a word is marked when any of its pieces is.
[[nodiscard]] std::uint8_t MarkOf(const Marks& marks, const ScriptWord& word);

[[nodiscard]] bool IsLetterByte(char byte);
[[nodiscard]] bool IsWordByte(char byte);

}  // namespace tavimo::host
