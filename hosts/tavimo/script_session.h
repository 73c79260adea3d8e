// One script, opened: the pages in its working folder and the learner's marks. The current directory is the working
// folder while a session lives, so only one may live at a time; sessions of other processes with the same script wait.
//
//   HOME/scripts/first-day-0123456789abcdef/pages    the pages, see pages_folder.h
//                                           pages.lock
//
// The script itself is only read. Its file time says nothing: as long as its text is the same, the marks stay.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>

#include "engine_text.h"
#include "lesson_lock.h"
#include "page_canvas.h"
#include "page_setup.h"
#include "paged_text.h"
#include "pages_folder.h"
#include "working_folder.h"

namespace tavimo::host {

class ScriptSession {
 public:
  ScriptSession(const std::filesystem::path& home, const std::filesystem::path& script);
  ScriptSession(const ScriptSession&) = delete;
  ScriptSession& operator=(const ScriptSession&) = delete;
  ~ScriptSession();  // closes the script

  // Makes the pages and opens the script. A Refusal, and everything stays as it was, when it cannot be done. Marked words
  // of the same text stay marked, wherever they stand then; how many there are. A line on standard error tells when
  // some are not.
  std::size_t Build(const PageSetup& setup, const EngineText& text);

  // Opens the script with the pages of the last build, which are made again when the text or the font changed since.
  void Open();

  // The same, or a first build of the usual font and page where there was none.
  void OpenOrBuild();

  // Writes the highlight file anew, and the places of the words that the learner marked. REQUIRES: Build or Open.
  void ReplaceMarks(const Marks& marks, const Places& own);

  // After Build or Open.
  [[nodiscard]] const PageSetup& Setup() const { return built_->setup; }
  [[nodiscard]] const PageCanvas& Canvas() const { return *canvas_; }
  [[nodiscard]] const PagedText& Paged() const { return paged_; }
  [[nodiscard]] int PageCount() const { return paged_.PageCount(); }
  [[nodiscard]] Marks ReadMarks() const { return CurrentPages().ReadMarks(); }

  // Reads and lays out a page, from 0; the number of its lines. A Refusal when there is no such page.
  int LayOutPage(int page);

 private:
  void Lock();
  [[nodiscard]] bool IsCurrent(const std::string& text) const;
  void OpenPages();

  std::filesystem::path script_;
  WorkingFolder folder_;
  std::optional<LessonLock> lock_;
  std::optional<BuiltPages> built_;
  std::optional<PageCanvas> canvas_;
  PagedText paged_;
};

}  // namespace tavimo::host
