// One script, opened: its working folder with the copy that the engine reads, the pages, and the learner's marks. The
// current directory is the working folder while a session lives, so only one may live at a time.
//
//   HOME/scripts/first-day-0123456789abcdef/pages.ini    what the pages were made of
//                                           pages/script.txt   the copy: GBK, CR LF
//                                           pages/script.pag   its page file
//                                           pages/script.lin   a page file of pages of one line: where lines begin
//                                           pages/script.hlt   its highlight file: the marks
//
// The four files bear the same file time, by which the engine knows that the marks belong to the text. The script itself
// is only read, and its own file time says nothing: as long as the text is the same, the copy keeps its time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "engine_text.h"
#include "page_canvas.h"
#include "page_setup.h"
#include "tavimo.h"
#include "working_folder.h"

namespace tavimo::host {

class ScriptSession {
 public:
  ScriptSession(const std::filesystem::path& home, const std::filesystem::path& script);
  ScriptSession(const ScriptSession&) = delete;
  ScriptSession& operator=(const ScriptSession&) = delete;
  ~ScriptSession();  // closes the script

  // Makes the pages and opens the script. A Refusal, and everything stays as it was, when it cannot be done. Marks stay
  // with a text that did not change; a line on standard error tells when they are gone.
  void Build(const PageSetup& setup, const EngineText& text);

  // Opens the script with the pages of the last build, which are made again when the text or the font changed since.
  void Open();

  // What an earlier build made, as long as it belongs to this text; for moving its marks to other pages.
  [[nodiscard]] bool OpenEarlier(const EngineText& text);

  // Whether some earlier command has made pages.
  [[nodiscard]] bool IsBuilt() const { return built_.has_value(); }

  // After Build or Open.
  [[nodiscard]] const PageSetup& Setup() const { return built_->setup; }
  [[nodiscard]] const PageCanvas& Canvas() const { return *canvas_; }
  [[nodiscard]] const std::string& Text() const { return text_; }
  [[nodiscard]] int PageCount() const { return static_cast<int>(pages_.size()) - 1; }
  [[nodiscard]] const std::vector<VcPageIndexEntry>& Pages() const { return pages_; }  // one more than there are
  [[nodiscard]] const std::vector<VcPageIndexEntry>& Lines() const { return lines_; }  // the same
  [[nodiscard]] std::vector<std::uint8_t> ReadMarks() const;  // the bytes of the highlight file

  // Reads and lays out a page, from 0; the number of its lines. A Refusal when there is no such page.
  int LayOutPage(int page);

 private:
  // The marks of a file of that time belong to the text; without one there are none.
  void MakePages(const EngineText& text, const BuiltPages& now,
                 const std::optional<std::filesystem::file_time_type>& marksTime);
  void OpenFiles(const std::string& text);
  [[nodiscard]] bool IsCurrent(const std::string& text, const BuiltPages& built) const;

  std::filesystem::path script_;
  WorkingFolder folder_;
  std::optional<BuiltPages> built_;
  std::optional<PageCanvas> canvas_;
  std::string text_;
  std::vector<VcPageIndexEntry> pages_;
  std::vector<VcPageIndexEntry> lines_;
};

}  // namespace tavimo::host
