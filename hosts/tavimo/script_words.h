// The lines of a script's pages and the words on them: where each stands in the text and on the picture, and whether it
// is marked. The engine breaks the lines; this finds the words on them by the rules it numbers them by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "script_session.h"

namespace tavimo::host {

// A run of letters and digits on one line. A word that a line's end cuts has a piece on each of two lines.
struct WordPiece {
  int page = 0;  // from 0
  std::size_t start = 0;
  std::size_t length = 0;
  std::optional<int> x;  // of its first letter, which a click must hit; none where it has digits alone
  int y = 0;
  bool isMarked = false;
};

struct ScriptLine {
  std::size_t start = 0;  // in the text
  std::size_t length = 0;
  std::vector<WordPiece> pieces;
};

// The lines of a page, laid out by the engine. A Refusal when there is no such page.
[[nodiscard]] std::vector<ScriptLine> ReadLinesOfPage(ScriptSession& session, int page,
                                                      const std::vector<std::uint8_t>& marks);

// One word of the text with all its pieces; marked when any of them is.
struct ScriptWord {
  std::size_t start = 0;
  std::size_t length = 0;
  std::vector<WordPiece> pieces;

  [[nodiscard]] bool IsMarked() const;
};

// The words of the pages first to last.
[[nodiscard]] std::vector<ScriptWord> ReadWords(ScriptSession& session, int firstPage, int lastPage);

// Marks words or takes their marks away, by clicks on them. A Refusal when the engine does not mark one of them.
enum class Mark { Off, On };
void SetMarks(ScriptSession& session, const std::vector<ScriptWord>& words, Mark mark);

[[nodiscard]] bool IsWordByte(char byte);

}  // namespace tavimo::host
