// `tavimo pages mark`: words marked, or their marks taken away, by name or by a click on the page.
#include <algorithm>
#include <array>
#include <iostream>

#include "marked_words.h"
#include "options.h"
#include "refusal.h"
#include "script_session.h"
#include "text.h"
#include "text_sentences.h"

namespace tavimo::host {

namespace {

bool IsSameLetter(char left, char right) {
  const auto small = [](char letter) { return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter; };
  return small(left) == small(right);
}

std::string InQuotes(const std::string& word) {
  return std::string(1, '\'').append(ReadableText(word)).append(1, '\'');
}

void CheckWord(const std::string& word) {
  const std::string quoted = InQuotes(word);
  if (!std::all_of(word.begin(), word.end(), IsWordByte)) {
    throw Refusal(quoted + " is not one word; a word is letters and digits alone, and an apostrophe or hyphen ends it");
  }
  const auto isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
  if (std::all_of(word.begin(), word.end(), isDigit)) throw Refusal(quoted + " has no letter, and cannot be marked");
}

bool IsOnPage(const PagedText& paged, const ScriptWord& word, int page) {
  return std::any_of(word.pieces.begin(), word.pieces.end(),
                     [&](const WordPiece& piece) { return paged.PageOf(piece.start) == page; });
}

std::vector<ScriptWord> FindWord(const PagedText& paged, const Options& options) {
  if (options.page.value_or(1) > paged.PageCount()) {
    throw Refusal("there is no page " + std::to_string(*options.page) + "; it has " +
                  std::to_string(paged.PageCount()));
  }
  std::vector<ScriptWord> words;
  ForEachWord(paged, [&](const ScriptWord& word) {
    const std::string_view text = std::string_view(paged.text).substr(word.start, word.length);
    const bool isWanted = std::equal(text.begin(), text.end(), options.word.begin(), options.word.end(), IsSameLetter);
    if (isWanted && (!options.page || IsOnPage(paged, word, *options.page - 1))) words.push_back(word);
  });
  const std::string where = options.page ? "on page " + std::to_string(*options.page) : "in it";
  if (words.empty()) throw Refusal("there is no word " + InQuotes(options.word) + " " + where);
  if (!options.occurrence) return words;
  const auto number = static_cast<std::size_t>(*options.occurrence);
  if (number <= words.size()) return {words[number - 1]};
  throw Refusal(InQuotes(options.word) + " stands " + std::to_string(words.size()) + " times " + where + ", not " +
                std::to_string(number));
}

constexpr const char* kNoRoom = "its page has more pieces of words than can be marked";

void Report(int page, const std::string& word, bool isMarked) {
  std::cout << "page " << page << ": " << word << (isMarked ? " marked" : " no longer marked");
}

std::vector<ScriptWord> ReadMarked(const ScriptSession& session, const Places& own) {
  return MarkedWords(session.Paged(), session.ReadMarks(), own);
}

// Two words may share a number: it is marked as long as one of them is to be.
Marks MarksFor(const ScriptSession& session, const std::vector<ScriptWord>& marked,
               const std::vector<ScriptWord>& unmarked) {
  Marks marks = session.ReadMarks();
  for (const ScriptWord& word : unmarked) {
    for (const WordPiece& piece : word.pieces) SetMark(marks, piece, Mark::Off);
  }
  for (const ScriptWord& word : marked) {
    for (const WordPiece& piece : word.pieces) SetMark(marks, piece, Mark::On);
  }
  return marks;
}

// Whether the words are as they were wanted; those that the highlight file has no room for never are.
int ReportMarks(const ScriptSession& session, const std::vector<ScriptWord>& words, const Places& before,
                const Places& after) {
  const std::string& text = session.Paged().text;
  SentenceReader sentences(text);
  int result = kDone;
  for (const ScriptWord& word : words) {
    const std::string name = text.substr(word.start, word.length);
    const bool isMarked = after.contains(word.start);
    if (isMarked == before.contains(word.start)) {
      std::cerr << "tavimo: page " << word.page + 1 << ": " << name << " cannot be marked; " << kNoRoom << '\n';
      result = kRefused;
      continue;
    }
    Report(word.page + 1, name, isMarked);
    std::cout << ": " << sentences.Around(word.start) << '\n';
  }
  return result;
}

int MarkByName(ScriptSession& session, const Options& options) {
  CheckWord(options.word);
  const std::vector<ScriptWord> words = FindWord(session.Paged(), options);
  std::vector<ScriptWord> marked = ReadMarked(session, CurrentPages().ReadOwn());
  const Places before = PlacesOf(marked);
  const Places named = PlacesOf(words);
  std::vector<ScriptWord> unmarked;
  std::erase_if(marked, [&](const ScriptWord& word) { return named.contains(word.start); });
  for (const ScriptWord& word : words) (before.contains(word.start) ? unmarked : marked).push_back(word);
  session.ReplaceMarks(MarksFor(session, marked, unmarked), PlacesOf(marked));
  const Places after = PlacesOf(ReadMarked(session, PlacesOf(marked)));
  return ReportMarks(session, words, before, after);
}

// What a click does is seen: it turns the colour of a number round, and with it all words that have the number.
void NoteClick(const ScriptSession& session, const Marks& before, const Marks& after, int page) {
  Places own = CurrentPages().ReadOwn();
  ForEachWord(session.Paged(), [&](const ScriptWord& word) {
    const bool isClicked =
        IsOnPage(session.Paged(), word, page) && MarkOf(before, word) == 0 && MarkOf(after, word) != 0;
    if (isClicked) own.insert(word.start);
  });
  CurrentPages().WriteOwn(PlacesOf(ReadMarked(session, own)));
}

int MarkByClick(ScriptSession& session, const Options& options) {
  std::array<char, 161> word{};
  std::int32_t state = 0;
  const PagePoint at = options.at.value();
  const Marks before = session.ReadMarks();
  session.LayOutPage(options.page.value() - 1);
  if (vcBeginSelect(session.Canvas().picture.get(), at.x, at.y, &state, word.data()) <= 0) {
    throw Refusal("there is no word at " + std::to_string(at.x) + "," + std::to_string(at.y) + " of page " +
                  std::to_string(*options.page));
  }
  const Marks after = session.ReadMarks();
  if (after == before) throw Refusal("this word cannot be marked; " + std::string(kNoRoom));
  NoteClick(session, before, after, *options.page - 1);
  Report(*options.page, Utf8FromGbkText(word.data()), state != 0);
  std::cout << '\n';
  return kDone;
}

}  // namespace

int RunPagesMark(const Options& options) {
  ScriptSession session(options.home, options.files.front());
  session.Open();
  return options.at ? MarkByClick(session, options) : MarkByName(session, options);
}

}  // namespace tavimo::host
