#include "paged_text.h"

#include <algorithm>
#include <iterator>

#include "system.h"

namespace tavimo::host {

namespace {

constexpr unsigned kPiecesInByte = 4;
constexpr unsigned kPieceMask = 3;

unsigned ShiftOf(std::size_t number) { return static_cast<unsigned>(6 - 2 * (number % kPiecesInByte)); }

bool AreBoundsOf(const std::vector<VcPageIndexEntry>& entries, std::size_t textBytes) {
  const auto isBefore = [](const auto& left, const auto& right) { return left.text_offset < right.text_offset; };
  return entries.size() >= 2 && entries.front().text_offset == 0 && entries.back().text_offset == textBytes &&
         std::is_sorted(entries.begin(), entries.end(), isBefore);
}

}  // namespace

bool IsLetterByte(char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); }

bool IsWordByte(char byte) { return IsLetterByte(byte) || (byte >= '0' && byte <= '9'); }

bool PagedText::IsSound() const { return AreBoundsOf(pages, text.size()) && AreBoundsOf(lines, text.size()); }

bool HasRoomFor(const Marks& marks, std::size_t number) { return number / kPiecesInByte < marks.size(); }

std::uint8_t MarkOf(const Marks& marks, std::size_t number) {
  if (!HasRoomFor(marks, number)) return 0;
  return static_cast<std::uint8_t>(marks[number / kPiecesInByte] >> ShiftOf(number) & kPieceMask);
}

void SetMark(Marks& marks, std::size_t number, std::uint8_t mark) {
  std::uint8_t& byte = marks[number / kPiecesInByte];
  const unsigned others = byte & ~(kPieceMask << ShiftOf(number));
  byte = static_cast<std::uint8_t>(others | static_cast<unsigned>(mark) << ShiftOf(number));
}

std::vector<TextLine> LinesOfPage(const PagedText& paged, int page) {
  const VcPageIndexEntry& begin = paged.pages[static_cast<std::size_t>(page)];
  const VcPageIndexEntry& end = paged.pages[static_cast<std::size_t>(page) + 1];
  const auto isBefore = [](const VcPageIndexEntry& entry, std::uint32_t offset) { return entry.text_offset < offset; };
  auto entry = std::lower_bound(paged.lines.begin(), paged.lines.end(), begin.text_offset, isBefore);
  std::vector<TextLine> lines;
  for (; std::next(entry) < paged.lines.end() && entry->text_offset < end.text_offset; ++entry) {
    lines.push_back({entry->text_offset, std::next(entry)->text_offset - entry->text_offset});
  }
  return lines;
}

std::vector<WordPiece> FindPieces(const std::string& text, const TextLine& line, std::size_t firstNumber) {
  std::vector<WordPiece> pieces;
  for (std::size_t at = line.start; at < line.start + line.length; ++at) {
    if (!IsWordByte(text[at])) continue;
    const bool isNew = at == line.start || !IsWordByte(text[at - 1]);
    if (isNew) pieces.push_back({at, 0, firstNumber + pieces.size()});
    ++pieces.back().length;
  }
  return pieces;
}

void ForEachWord(const PagedText& paged, int firstPage, int lastPage,
                 const std::function<void(const ScriptWord&)>& visit) {
  ScriptWord word;
  const auto add = [&](int page, const WordPiece& piece) {
    const bool continues = !word.pieces.empty() && word.start + word.length == piece.start;
    if (!continues && !word.pieces.empty()) visit(word);
    if (!continues) word = {page, piece.start, 0, {}};
    word.length += piece.length;
    word.pieces.push_back(piece);
  };
  for (int page = firstPage; page <= lastPage; ++page) {
    StopIfInterrupted();
    std::size_t number = paged.pages[static_cast<std::size_t>(page)].first_word;
    for (const TextLine& line : LinesOfPage(paged, page)) {
      const std::vector<WordPiece> pieces = FindPieces(paged.text, line, number);
      number += pieces.size();
      for (const WordPiece& piece : pieces) add(page, piece);
    }
  }
  if (!word.pieces.empty()) visit(word);
}

std::uint8_t MarkOf(const Marks& marks, const ScriptWord& word) {
  std::uint8_t mark = 0;
  for (const WordPiece& piece : word.pieces) mark = std::max(mark, MarkOf(marks, piece.number));
  return mark;
}

}  // namespace tavimo::host
