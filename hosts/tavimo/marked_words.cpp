#include "marked_words.h"

#include <algorithm>

namespace tavimo::host {

namespace {

// Leaves those out that are marked only because they share a number with a word of the learner's own.
void RemoveSharers(std::vector<ScriptWord>& words, const Places& own) {
  std::set<std::size_t> ownNumbers;
  for (const ScriptWord& word : words) {
    if (!own.contains(word.start)) continue;
    for (const WordPiece& piece : word.pieces) {
      if (piece.number) ownNumbers.insert(*piece.number);
    }
  }
  std::erase_if(words, [&](const ScriptWord& word) {
    return !own.contains(word.start) && std::any_of(word.pieces.begin(), word.pieces.end(), [&](const auto& piece) {
      return piece.number && ownNumbers.contains(*piece.number);
    });
  });
}

}  // namespace

std::vector<ScriptWord> MarkedWords(const PagedText& paged, const Marks& marks, const Places& own) {
  std::vector<ScriptWord> words;
  ForEachWord(paged, [&](const ScriptWord& word) {
    if (MarkOf(marks, word) != 0) words.push_back(word);
  });
  RemoveSharers(words, own);
  return words;
}

MovedMarks MoveMarks(const PagedText& from, const Marks& marks, const Places& own, const PagedText& to,
                     std::size_t byteCount) {
  const std::vector<ScriptWord> words = MarkedWords(from, marks, own);
  MovedMarks moved;
  moved.marks.resize(byteCount);
  auto next = words.begin();  // the words of both rise alike
  ForEachWord(to, [&](const ScriptWord& word) {
    if (next == words.end() || next->start != word.start) return;
    bool isKept = false;
    for (const WordPiece& piece : word.pieces) {
      if (!piece.number) continue;
      SetMark(moved.marks, piece, MarkOf(marks, *next));
      isKept = true;
    }
    if (isKept) moved.places.insert(moved.places.end(), word.start);
    if (!isKept) ++moved.lostCount;
    ++next;
  });
  return moved;
}

}  // namespace tavimo::host
