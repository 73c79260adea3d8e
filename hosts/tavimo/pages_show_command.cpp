// `tavimo pages show`: a page as text in the terminal, or as the picture that the engine draws.
#include <algorithm>
#include <iostream>

#include "new_file.h"
#include "options.h"
#include "page_lines.h"
#include "refusal.h"
#include "system.h"
#include "text.h"
#include "text_sentences.h"

namespace tavimo::host {

namespace {

struct Highlight {
  const char* begin;
  const char* end;
};
constexpr Highlight kRed{"\x1b[31m", "\x1b[0m"};
constexpr Highlight kBrackets{"[", "]"};

bool IsMarkedAt(const PageLine& line, const Marks& marks, std::size_t place, std::size_t byteCount) {
  return std::any_of(line.pieces.begin(), line.pieces.end(), [&](const PlacedPiece& placed) {
    const WordPiece& piece = placed.piece;
    return piece.start < place + byteCount && place < piece.start + piece.length && MarkOf(marks, piece.number) != 0;
  });
}

// A mark goes around whole characters: the second byte of a Chinese one may count as a word.
std::string LineText(const std::string& text, const PageLine& line, const Marks& marks, const Highlight& highlight) {
  std::string shown;
  const std::string_view bytes = std::string_view(text).substr(line.start, line.length);
  const bool isParagraph = bytes.starts_with("@@");
  if (isParagraph) shown = "  ";
  bool isMarked = false;
  for (std::size_t at = isParagraph ? 2 : 0; at < bytes.size();) {
    const std::size_t byteCount = GbkCharacterBytes(bytes, at);
    const bool isNowMarked = IsMarkedAt(line, marks, line.start + at, byteCount);
    if (isNowMarked != isMarked) shown += isNowMarked ? highlight.begin : highlight.end;
    isMarked = isNowMarked;
    shown += bytes[at] == '\t' ? " " : Utf8FromGbkText(bytes.substr(at, byteCount));
    at += byteCount;
  }
  return shown + (isMarked ? highlight.end : "");
}

void DrawPage(ScriptSession& session, int page, const std::filesystem::path& file) {
  session.LayOutPage(page);
  VcDc picture = session.Canvas().picture.get();
  if (vcDisplayPage(picture) <= 0) throw Refusal("page " + std::to_string(page + 1) + " cannot be drawn");
  SavePicture(picture, file);
}

}  // namespace

int RunPagesShow(const Options& options) {
  ScriptSession session(options.home, options.files.front());
  session.Open();
  const int page = options.page.value_or(1) - 1;
  const std::string title = "page " + std::to_string(page + 1) + " of " + std::to_string(session.PageCount());
  if (options.hasOutput) {
    CheckOutput(options.files.front(), options.output, Existing::Replace);
    DrawPage(session, page, options.output);
    std::cout << Readable(options.output) << ": " << title << '\n';
    return kDone;
  }
  const std::vector<PageLine> lines = ReadPageLines(session, page);
  const Marks marks = session.ReadMarks();
  std::cout << title << '\n';
  const Highlight& highlight = OutputGoesToTerminal() ? kRed : kBrackets;
  for (const PageLine& line : lines) std::cout << LineText(session.Paged().text, line, marks, highlight) << '\n';
  return kDone;
}

}  // namespace tavimo::host
