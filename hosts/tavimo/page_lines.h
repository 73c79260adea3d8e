// The lines of a page as the engine laid it out, with the words on them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "script_session.h"

namespace tavimo::host {

struct PageLine {
  std::size_t start = 0;    // in the text
  std::size_t length = 0;   // without the line end
  bool hasLineEnd = false;  // in the text; without one the next line goes on with it
  std::vector<WordPiece> pieces;
};

// Reads and lays out a page, from 0. A Refusal when there is no such page.
[[nodiscard]] std::vector<PageLine> ReadPageLines(ScriptSession& session, int page);

// A line as a person reads it, in UTF-8: text that is not marked and marked words by turns. A mark goes around whole
// characters: the second byte of a Chinese one may count as a word.
[[nodiscard]] std::vector<std::string> RunsOf(const std::string& text, const PageLine& line, const Marks& marks);

}  // namespace tavimo::host
