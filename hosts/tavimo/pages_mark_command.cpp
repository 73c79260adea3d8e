// `tavimo pages mark`: words marked, or their marks taken away, by name or by a click on the page.
#include <algorithm>
#include <array>
#include <iostream>

#include "options.h"
#include "page_lines.h"
#include "refusal.h"
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

std::vector<ScriptWord> FindWord(const PagedText& paged, const Options& options) {
  const int first = options.page.value_or(1) - 1;
  const int last = options.page.value_or(paged.PageCount()) - 1;
  if (first < 0 || last >= paged.PageCount()) {
    throw Refusal("there is no page " + std::to_string(last + 1) + "; it has " + std::to_string(paged.PageCount()));
  }
  std::vector<ScriptWord> words;
  ForEachWord(paged, first, last, [&](const ScriptWord& word) {
    const std::string_view text = std::string_view(paged.text).substr(word.start, word.length);
    const bool isWanted = std::equal(text.begin(), text.end(), options.word.begin(), options.word.end(), IsSameLetter);
    if (isWanted) words.push_back(word);
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

// Notes the words that are the learner's own.
void NoteOwn(const std::vector<ScriptWord>& words, const Marks& after) {
  Places own = CurrentPages().ReadOwn();
  for (const ScriptWord& word : words) {
    if (MarkOf(after, word) != 0) {
      own.insert(word.start);
    } else {
      own.erase(word.start);
    }
  }
  CurrentPages().WriteOwn(own);
}

// Whether the highlight file has the words as they were wanted; those beyond its bytes it never has.
int ReportMarks(const ScriptSession& session, const std::vector<ScriptWord>& words, const Marks& before) {
  const std::string& text = session.Paged().text;
  const Marks after = session.ReadMarks();
  SentenceReader sentences(text);
  int result = kDone;
  for (const ScriptWord& word : words) {
    const std::string name = text.substr(word.start, word.length);
    const bool isMarked = MarkOf(after, word) != 0;
    if (isMarked == (MarkOf(before, word) != 0)) {
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
  const Marks before = session.ReadMarks();
  std::vector<ScriptWord> marked;
  std::vector<ScriptWord> unmarked;
  for (const ScriptWord& word : words) (MarkOf(before, word) != 0 ? marked : unmarked).push_back(word);
  ClickOnWords(session, marked, Mark::Off);
  ClickOnWords(session, unmarked, Mark::On);
  NoteOwn(words, session.ReadMarks());
  return ReportMarks(session, words, before);
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
  ForEachWord(session.Paged(), *options.page - 1, *options.page - 1, [&](const ScriptWord& clicked) {
    if ((MarkOf(before, clicked) != 0) != (MarkOf(after, clicked) != 0)) NoteOwn({clicked}, after);
  });
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
