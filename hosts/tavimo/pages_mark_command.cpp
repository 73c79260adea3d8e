// `tavimo pages mark`: words marked, or their marks taken away, by name or by a click on the page.
#include <algorithm>
#include <array>
#include <iostream>

#include "lesson_lock.h"
#include "options.h"
#include "refusal.h"
#include "script_words.h"
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

std::vector<ScriptWord> FindWord(ScriptSession& session, const Options& options) {
  const int first = options.page.value_or(1) - 1;
  const int last = options.page.value_or(session.PageCount()) - 1;
  std::vector<ScriptWord> words = ReadWords(session, first, last);
  std::erase_if(words, [&](const ScriptWord& word) {
    const std::string_view text = std::string_view(session.Text()).substr(word.start, word.length);
    return !std::equal(text.begin(), text.end(), options.word.begin(), options.word.end(), IsSameLetter);
  });
  const std::string where = options.page ? "on page " + std::to_string(*options.page) : "in it";
  if (words.empty()) throw Refusal("there is no word " + InQuotes(options.word) + " " + where);
  if (!options.occurrence) return words;
  const auto number = static_cast<std::size_t>(*options.occurrence);
  if (number <= words.size()) return {words[number - 1]};
  throw Refusal(InQuotes(options.word) + " stands " + std::to_string(words.size()) + " times " + where + ", not " +
                std::to_string(number));
}

void Report(int page, const std::string& word, bool isMarked) {
  std::cout << "page " << page << ": " << word << (isMarked ? " marked" : " no longer marked");
}

void MarkByName(ScriptSession& session, const Options& options) {
  CheckWord(options.word);
  for (const ScriptWord& word : FindWord(session, options)) {
    const bool isMarked = !word.IsMarked();
    SetMarks(session, {word}, isMarked ? Mark::On : Mark::Off);
    Report(word.pieces.front().page + 1, session.Text().substr(word.start, word.length), isMarked);
    std::cout << ": " << SentenceAround(session.Text(), word.start) << '\n';
  }
}

void MarkByClick(ScriptSession& session, const Options& options) {
  std::array<char, 161> word{};
  std::int32_t state = 0;
  const PagePoint at = options.at.value();
  session.LayOutPage(options.page.value() - 1);
  if (vcBeginSelect(session.Canvas().picture.get(), at.x, at.y, &state, word.data()) <= 0) {
    throw Refusal("there is no word at " + std::to_string(at.x) + "," + std::to_string(at.y) + " of page " +
                  std::to_string(*options.page));
  }
  Report(*options.page, Utf8FromGbkText(word.data()), state != 0);
  std::cout << '\n';
}

}  // namespace

int RunPagesMark(const Options& options) {
  ScriptSession session(options.home, options.files.front());
  session.Open();
  const LessonLock lock("pages.lock", kChangingElsewhere);
  if (options.at) {
    MarkByClick(session, options);
  } else {
    MarkByName(session, options);
  }
  return kDone;
}

}  // namespace tavimo::host
