#include "page_lines.h"

#include <algorithm>
#include <array>

#include "refusal.h"
#include "system.h"
#include "text_sentences.h"

namespace tavimo::host {

namespace {

// Where a page ends, the engine lays out without what follows: a short line at the end may then hold the last one too.
void JoinLinesBehind(std::vector<TextLine>& lines, int lineCount) {
  while (lineCount > 0 && lines.size() > static_cast<std::size_t>(lineCount)) {
    const std::size_t length = lines.back().length;
    lines.pop_back();
    lines.back().length += length;
  }
}

// Behind a text's last line there may be a CR alone.
std::size_t LengthWithoutLineEnd(const TextLine& line, const std::string& text) {
  std::size_t length = line.length;
  while (length > 0 && (text[line.start + length - 1] == '\n' || text[line.start + length - 1] == '\r')) --length;
  return length;
}

std::vector<PlacedPiece> PlacePieces(const TextLine& line, const std::string& text, const PageCanvas& canvas,
                                     PageNumbers& numbers) {
  std::vector<PlacedPiece> placed;
  int x = canvas.margin;
  std::size_t at = line.start;
  for (const WordPiece& piece : FindPieces(text, line, numbers)) {
    placed.push_back({piece, {}});
    for (; at < piece.start + piece.length; ++at) {
      const bool isFirstLetter = at >= piece.start && IsLetterByte(text[at]) && !placed.back().x;
      if (isFirstLetter) placed.back().x = x;
      x += canvas.advances[static_cast<unsigned char>(text[at])];
    }
  }
  return placed;
}

bool IsMarkedAt(const PageLine& line, const Marks& marks, std::size_t place, std::size_t byteCount) {
  return std::any_of(line.pieces.begin(), line.pieces.end(), [&](const PlacedPiece& placed) {
    const WordPiece& piece = placed.piece;
    return piece.start < place + byteCount && place < piece.start + piece.length && MarkOf(marks, piece) != 0;
  });
}

// A page that clicks go to. Each of them turns a mark round and saves it.
class ClickablePage {
 public:
  explicit ClickablePage(ScriptSession& session) : session_(session) {}

  // A Refusal when the mark cannot be made what it should be. A piece with digits alone has nothing to click on.
  void Mark(const WordPiece& piece, std::int32_t wanted) {
    Show(session_.Paged().PageOf(piece.start));
    for (const PageLine& line : lines_) {
      for (const PlacedPiece& placed : line.pieces) {
        if (placed.piece.start != piece.start || !placed.x) continue;
        if (Click(*placed.x, line.y) != wanted && Click(*placed.x, line.y) != wanted) {
          throw Refusal("its marks could not be saved");
        }
      }
    }
  }

 private:
  void Show(int page) {
    if (page == page_) return;
    StopIfInterrupted();
    lines_ = ReadPageLines(session_, page);
    page_ = page;
  }

  std::int32_t Click(int x, int y) {
    std::array<char, 161> word{};
    std::int32_t state = -1;
    vcBeginSelect(session_.Canvas().picture.get(), x, y, &state, word.data());
    return state;
  }

  ScriptSession& session_;
  int page_ = -1;
  std::vector<PageLine> lines_;
};

}  // namespace

std::vector<PageLine> ReadPageLines(ScriptSession& session, int page) {
  const int lineCount = session.LayOutPage(page);
  const PagedText& paged = session.Paged();
  std::vector<TextLine> lines = LinesOfPage(paged, page);
  JoinLinesBehind(lines, lineCount);
  PageNumbers numbers(paged, page);
  const PageCanvas& canvas = session.Canvas();
  std::vector<PageLine> pageLines;
  pageLines.reserve(lines.size());
  for (const TextLine& line : lines) {
    const std::size_t length = LengthWithoutLineEnd(line, paged.text);
    const int y = canvas.margin + static_cast<int>(pageLines.size()) * canvas.lineHeight;
    pageLines.push_back({line.start, length, length < line.length, y, PlacePieces(line, paged.text, canvas, numbers)});
  }
  return pageLines;
}

std::vector<std::string> RunsOf(const std::string& text, const PageLine& line, const Marks& marks) {
  const std::string_view bytes = std::string_view(text).substr(line.start, line.length);
  const bool isParagraph = bytes.starts_with("@@");
  std::vector<std::string> runs = {isParagraph ? "  " : ""};
  for (std::size_t at = isParagraph ? 2 : 0; at < bytes.size();) {
    const std::size_t byteCount = GbkCharacterBytes(bytes, at);
    const bool isLastMarked = runs.size() % 2 == 0;
    if (IsMarkedAt(line, marks, line.start + at, byteCount) != isLastMarked) runs.emplace_back();
    runs.back() += bytes[at] == '\t' ? " " : Utf8FromGbkText(bytes.substr(at, byteCount));
    at += byteCount;
  }
  return runs;
}

void ClickOnPieces(ScriptSession& session, const std::vector<WordPiece>& pieces, Mark mark) {
  ClickablePage page(session);
  for (const WordPiece& piece : pieces) page.Mark(piece, mark == Mark::On ? 1 : 0);
}

}  // namespace tavimo::host
