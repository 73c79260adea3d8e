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

Places PlacesOf(const std::vector<ScriptWord>& words) {
  Places places;
  for (const ScriptWord& word : words) places.insert(places.end(), word.start);
  return places;
}

MovedMarks MoveMarks(const Places& words, const PagedText& to, std::size_t byteCount) {
  MovedMarks moved;
  moved.marks.resize(byteCount);
  ForEachWord(to, [&](const ScriptWord& word) {
    if (!words.contains(word.start)) return;
    for (const WordPiece& piece : word.pieces) SetMark(moved.marks, piece, Mark::On);
    if (MarkOf(moved.marks, word) != 0) {
      moved.places.insert(moved.places.end(), word.start);
    } else {
      ++moved.lostCount;
    }
  });
  return moved;
}

}  // namespace tavimo::host
