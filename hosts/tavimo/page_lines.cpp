#include "page_lines.h"

#include <algorithm>

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

bool IsMarkedAt(const PageLine& line, const Marks& marks, std::size_t place, std::size_t byteCount) {
  return std::any_of(line.pieces.begin(), line.pieces.end(), [&](const WordPiece& piece) {
    return piece.start < place + byteCount && place < piece.start + piece.length && MarkOf(marks, piece) != 0;
  });
}

}  // namespace

std::vector<PageLine> ReadPageLines(ScriptSession& session, int page) {
  const int lineCount = session.LayOutPage(page);
  const PagedText& paged = session.Paged();
  std::vector<TextLine> lines = LinesOfPage(paged, page);
  JoinLinesBehind(lines, lineCount);
  PageNumbers numbers(paged, page);
  std::vector<PageLine> pageLines;
  pageLines.reserve(lines.size());
  for (const TextLine& line : lines) {
    const std::size_t length = LengthWithoutLineEnd(line, paged.text);
    pageLines.push_back({line.start, length, length < line.length, FindPieces(paged.text, line, numbers)});
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

}  // namespace tavimo::host
