// The lines of a page as the engine laid it out: where each stands in the text, and where the words are to be clicked on.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "script_session.h"

namespace tavimo::host {

struct PlacedPiece {
  WordPiece piece;
  std::optional<int> x;  // of its first letter, which a click must hit; none where it has digits alone
};

struct PageLine {
  std::size_t start = 0;    // in the text
  std::size_t length = 0;   // without the line end
  bool hasLineEnd = false;  // in the text; without one the next line goes on with it
  int y = 0;
  std::vector<PlacedPiece> pieces;
};

// Reads and lays out a page, from 0. A Refusal when there is no such page.
[[nodiscard]] std::vector<PageLine> ReadPageLines(ScriptSession& session, int page);

// A line as a person reads it, in UTF-8: text that is not marked and marked words by turns. A mark goes around whole
// characters: the second byte of a Chinese one may count as a word.
[[nodiscard]] std::vector<std::string> RunsOf(const std::string& text, const PageLine& line, const Marks& marks);

// Marks pieces of words or takes their marks away, by clicks on them. A Refusal when the engine does not do it.
// REQUIRES: the pieces have numbers.
enum class Mark { Off, On };
void ClickOnPieces(ScriptSession& session, const std::vector<WordPiece>& pieces, Mark mark);

}  // namespace tavimo::host
