#include "script_words.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "refusal.h"

namespace tavimo::host {

namespace {

bool IsLetter(char byte) { return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z'); }

// Word n has two bits in byte n / 4, the first word the highest.
bool IsMarkedIn(const std::vector<std::uint8_t>& marks, std::size_t number) {
  return number / 4 < marks.size() && (marks[number / 4] >> (6 - 2 * (number % 4)) & 3) != 0;
}

// The lines as the engine's pages of one line tell them.
std::vector<ScriptLine> SplitPage(const ScriptSession& session, int page) {
  const VcPageIndexEntry& begin = session.Pages()[static_cast<std::size_t>(page)];
  const VcPageIndexEntry& end = session.Pages()[static_cast<std::size_t>(page) + 1];
  const auto isBefore = [](const VcPageIndexEntry& entry, std::uint32_t offset) { return entry.text_offset < offset; };
  auto entry = std::lower_bound(session.Lines().begin(), session.Lines().end(), begin.text_offset, isBefore);
  std::vector<ScriptLine> lines;
  for (; std::next(entry) < session.Lines().end() && entry->text_offset < end.text_offset; ++entry) {
    lines.push_back({entry->text_offset, std::next(entry)->text_offset - entry->text_offset, {}});
  }
  return lines;
}

// Where a page ends, the engine lays out without what follows: a short line at the end may then hold the last one too.
void JoinLinesBehind(std::vector<ScriptLine>& lines, int lineCount) {
  while (lineCount > 0 && lines.size() > static_cast<std::size_t>(lineCount)) {
    const std::size_t length = lines.back().length;
    lines.pop_back();
    lines.back().length += length;
  }
}

// Leaves the line end out. Behind a text's last line there may be a CR alone.
void TrimLineEnd(ScriptLine& line, const std::string& text) {
  while (line.length > 0 &&
         (text[line.start + line.length - 1] == '\n' || text[line.start + line.length - 1] == '\r')) {
    --line.length;
  }
}

std::vector<WordPiece> FindPieces(const ScriptLine& line, const std::string& text, const PageCanvas& canvas) {
  std::vector<WordPiece> pieces;
  int x = canvas.margin;
  for (std::size_t at = line.start; at < line.start + line.length; ++at) {
    const char byte = text[at];
    if (IsWordByte(byte)) {
      const bool isNew = at == line.start || !IsWordByte(text[at - 1]);
      if (isNew) pieces.push_back({0, at, 0, {}, 0, false});
      WordPiece& piece = pieces.back();
      ++piece.length;
      if (!piece.x && IsLetter(byte)) piece.x = x;
    }
    x += canvas.advances[static_cast<unsigned char>(byte)];
  }
  return pieces;
}

}  // namespace

bool IsWordByte(char byte) { return IsLetter(byte) || (byte >= '0' && byte <= '9'); }

std::vector<ScriptLine> ReadLinesOfPage(ScriptSession& session, int page, const std::vector<std::uint8_t>& marks) {
  const int lineCount = session.LayOutPage(page);
  std::vector<ScriptLine> lines = SplitPage(session, page);
  JoinLinesBehind(lines, lineCount);
  std::size_t number = session.Pages()[static_cast<std::size_t>(page)].first_word;
  const PageCanvas& canvas = session.Canvas();
  int y = canvas.margin;
  for (ScriptLine& line : lines) {
    TrimLineEnd(line, session.Text());
    line.pieces = FindPieces(line, session.Text(), canvas);
    for (WordPiece& piece : line.pieces) {
      piece.page = page;
      piece.y = y;
      piece.isMarked = IsMarkedIn(marks, number++);
    }
    y += canvas.lineHeight;
  }
  return lines;
}

bool ScriptWord::IsMarked() const {
  return std::any_of(pieces.begin(), pieces.end(), [](const WordPiece& piece) { return piece.isMarked; });
}

std::vector<ScriptWord> ReadWords(ScriptSession& session, int firstPage, int lastPage) {
  const std::vector<std::uint8_t> marks = session.ReadMarks();
  std::vector<ScriptWord> words;
  for (int page = firstPage; page <= lastPage; ++page) {
    for (const ScriptLine& line : ReadLinesOfPage(session, page, marks)) {
      for (const WordPiece& piece : line.pieces) {
        const bool continues = !words.empty() && words.back().start + words.back().length == piece.start;
        if (!continues) words.push_back({piece.start, 0, {}});
        words.back().length += piece.length;
        words.back().pieces.push_back(piece);
      }
    }
  }
  return words;
}

void SetMarks(ScriptSession& session, const std::vector<ScriptWord>& words, Mark mark) {
  const std::int32_t wanted = mark == Mark::On ? 1 : 0;
  std::array<char, 161> word{};
  std::optional<int> page;
  const auto click = [&](const WordPiece& piece) {
    std::int32_t state = -1;
    if (page != piece.page) session.LayOutPage(piece.page);
    page = piece.page;
    vcBeginSelect(session.Canvas().picture.get(), *piece.x, piece.y, &state, word.data());
    return state;
  };
  for (const ScriptWord& scriptWord : words) {
    for (const WordPiece& piece : scriptWord.pieces) {
      // A click turns the mark round, so one or two of them make it what it should be. A piece with digits alone has
      // nothing to click on.
      if (piece.x && click(piece) != wanted && click(piece) != wanted) throw Refusal("its marks could not be saved");
    }
  }
}

}  // namespace tavimo::host
