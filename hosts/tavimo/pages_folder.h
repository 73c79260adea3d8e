// The folder with one script's pages, in the script's working folder, which is the current directory:
//
//   pages/script.txt   the copy of the script that the engine reads: GBK, CR LF
//   pages/script.pag   its page file
//   pages/script.lin   a page file of pages of one line: where lines begin
//   pages/script.hlt   its highlight file: the marks
//   pages/script.own   the places of the words that the learner marked, in the text, one a line
//   pages/pages.ini    what the pages were made of
//
// The highlight file decides what is marked. Where a page's end cuts a word, two words share a number and with it their
// mark, and the places tell which of them was meant.
// The numbers by which marks are kept belong to the pages, so the six change together: they are made in a folder beside
// this one, and one rename puts all of them in place.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "paged_text.h"

namespace tavimo::host {

struct PagesFolder {
  std::filesystem::path path;

  [[nodiscard]] std::filesystem::path Copy() const { return path / "script.txt"; }
  [[nodiscard]] std::filesystem::path Pages() const { return path / "script.pag"; }
  [[nodiscard]] std::filesystem::path Lines() const { return path / "script.lin"; }
  [[nodiscard]] std::filesystem::path Marks() const { return path / "script.hlt"; }
  [[nodiscard]] std::filesystem::path Own() const { return path / "script.own"; }
  [[nodiscard]] std::filesystem::path Settings() const { return path / "pages.ini"; }

  // The text with the bounds that the folder's page files have, which may be damaged.
  [[nodiscard]] PagedText ReadPaged(std::string text) const;
  [[nodiscard]] host::Marks ReadMarks() const;  // none where there is no highlight file
  [[nodiscard]] Places ReadOwn() const;
  void WriteOwn(const Places& places) const;  // a Refusal, and the old file stays, when it cannot be written
};

[[nodiscard]] PagesFolder CurrentPages();

// Whether there are pages, be it that a kill left them under the other name.
[[nodiscard]] bool HasPages();

// A folder for new pages, empty. What a kill left of others is gone, or in place when it was whole. REQUIRES: the lock.
[[nodiscard]] PagesFolder BeginNewPages();
void FinishNewPages();

// Puts new pages in the place of the old ones: both are there or only the new ones. A Refusal when that cannot be done.
void PutInPlace(const PagesFolder& newPages);

[[nodiscard]] std::string ReadBytes(const std::filesystem::path& file);  // empty where it cannot be read

}  // namespace tavimo::host
