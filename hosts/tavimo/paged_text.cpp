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

int PagedText::PageOf(std::size_t place) const {
  const auto isBefore = [](std::size_t offset, const VcPageIndexEntry& entry) { return offset < entry.text_offset; };
  const auto next = std::upper_bound(pages.begin(), pages.end(), place, isBefore);
  return static_cast<int>(next - pages.begin()) - 1;
}

std::uint8_t MarkOf(const Marks& marks, const WordPiece& piece) {
  if (!piece.number || *piece.number / kPiecesInByte >= marks.size()) return 0;
  return static_cast<std::uint8_t>(marks[*piece.number / kPiecesInByte] >> ShiftOf(*piece.number) & kPieceMask);
}

void SetMark(Marks& marks, const WordPiece& piece, Mark mark) {
  if (!piece.number) return;
  marks.resize(std::max(marks.size(), *piece.number / kPiecesInByte + 1));
  std::uint8_t& byte = marks[*piece.number / kPiecesInByte];
  const unsigned others = byte & ~(kPieceMask << ShiftOf(*piece.number));
  byte = static_cast<std::uint8_t>(others | static_cast<unsigned>(mark) << ShiftOf(*piece.number));
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

// The bytes that the engine reads for a page: those of its words as the page file counts them, and one more where the
// first of them begins in the middle of a byte.
PageNumbers::PageNumbers(const PagedText& paged, int page) : next_(0), end_(0) {
  const std::size_t first = paged.pages[static_cast<std::size_t>(page)].first_word;
  const std::size_t behind = paged.pages[static_cast<std::size_t>(page) + 1].first_word;
  const std::size_t count = std::max(behind, first) - first;
  const std::size_t bytes = (count + kPiecesInByte - 1) / kPiecesInByte + (first % kPiecesInByte != 0 ? 1 : 0);
  next_ = first;
  end_ = (first / kPiecesInByte + bytes) * kPiecesInByte;
}

std::optional<std::size_t> PageNumbers::Next() { return next_ < end_ ? std::optional(next_++) : std::nullopt; }

std::vector<WordPiece> FindPieces(const std::string& text, const TextLine& line, PageNumbers& numbers) {
  std::vector<WordPiece> pieces;
  for (std::size_t at = line.start; at < line.start + line.length; ++at) {
    if (!IsWordByte(text[at])) continue;
    const bool isNew = at == line.start || !IsWordByte(text[at - 1]);
    if (isNew) pieces.push_back({at, 0, numbers.Next()});
    ++pieces.back().length;
  }
  return pieces;
}

void ForEachWord(const PagedText& paged, const std::function<void(const ScriptWord&)>& visit) {
  ScriptWord word;
  const auto add = [&](int page, const WordPiece& piece) {
    const bool continues = !word.pieces.empty() && word.start + word.length == piece.start;
    if (!continues && !word.pieces.empty()) visit(word);
    if (!continues) word = {page, piece.start, 0, {}};
    word.length += piece.length;
    word.pieces.push_back(piece);
  };
  for (int page = 0; page < paged.PageCount(); ++page) {
    StopIfInterrupted();
    PageNumbers numbers(paged, page);
    for (const TextLine& line : LinesOfPage(paged, page)) {
      for (const WordPiece& piece : FindPieces(paged.text, line, numbers)) add(page, piece);
    }
  }
  if (!word.pieces.empty()) visit(word);
}

std::uint8_t MarkOf(const Marks& marks, const ScriptWord& word) {
  std::uint8_t mark = 0;
  for (const WordPiece& piece : word.pieces) mark = std::max(mark, MarkOf(marks, piece));
  return mark;
}

}  // namespace tavimo::host
