// The lesson as one page for a browser: sentences with waves and sound, takes, exercises, the script's pages, bookmarks.
// It needs no network and no other file; what it looks like and does stands in lesson_page.html.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "bookmark_list.h"
#include "lesson_session.h"
#include "question_bank.h"
#include "script_pages.h"

namespace tavimo::host {

class LessonPage {
 public:
  // Takes from the lesson what belongs to its recording: levels are those of its digest.
  LessonPage(const LessonSession& session, const std::vector<std::uint8_t>& levels,
             const std::vector<std::uint32_t>& startsMs);

  void AddBookmarks(const std::vector<Bookmark>& bookmarks);
  void AddExercises(const std::vector<Exercise>& exercises);
  void AddPicture(const std::filesystem::path& picture);
  void AddScriptPage(const ScriptPage& page);

  // A Refusal, and an old page stays, when it cannot be written.
  void Save(const std::filesystem::path& file) const;

 private:
  struct Sentence {
    std::uint32_t startMs = 0;
    std::int64_t endMs = 0;
    std::string wave;      // JSON, as are the following
    std::string take;      // empty: none
    std::string exercise;  // empty: none
  };
  [[nodiscard]] std::string SentencesJson() const;
  void AddTake(Sentence& sentence, int number);

  std::string title_;
  std::int64_t lengthMs_ = 0;
  std::string sound_;
  std::vector<Sentence> sentences_;
  std::vector<std::string> pages_;
  std::string bookmarks_;
  std::string picture_ = "null";
};

// The choices of a question, each with the letter it begins with; where a line does not begin with one it belongs to the
// choice before, and where none does every line is a choice.
struct Choice {
  char letter = 'A';
  std::string text;
};
[[nodiscard]] std::vector<Choice> SplitChoices(const std::string& choices);

}  // namespace tavimo::host
