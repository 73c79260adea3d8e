// The highlight file: the learner's marks for one script from one use of the program to the next. It is nothing but the
// states of all words, four in a byte (page_highlights.h), and carries the script's file time: with another time it
// belongs to an earlier version of the script.
//
// Marks are written in place, and only then gets the file its time back. So that a program that is killed in between does
// not lose them all, a note lies beside the file for that moment: under its name with "~", 8 bytes, the time it is to have.
#pragma once

#include <cstdint>

#include "core/fixed_text.h"
#include "pages/page_highlights.h"
#include "platform/files.h"

namespace tavimo::pages {

using HighlightNotePath = core::FixedText<1023>;  // empty for a longer path, which then has no note

// Leaves a highlight file that carries the script's file time: the one that is there, also when a note says that only the
// time is missing, or a new one without marks. A failure leaves what was there and is not reported: opening the file will fail.
void EnsureHighlightFile(const char* scriptPath, const char* highlightPath) noexcept;

// Whether a file has the name of the note: it would be taken away as one.
[[nodiscard]] bool IsHighlightNote(const char* path, const char* highlightPath) noexcept;

class HighlightFile {
 public:
  // Takes a read-only mark away. False when the file cannot be opened for reading and writing.
  [[nodiscard]] bool Open(const char* path) noexcept;
  void Close() noexcept { file_.Close(); }

  // Four for each byte; 0 when no file is open.
  [[nodiscard]] std::int32_t WordSlots() const noexcept;

  // What the file does not hold is plain, and everything when no file is open. False when reading fails: the next click would
  // save plain words over the page's marks.
  [[nodiscard]] bool Read(PageHighlights& page) noexcept;

  // Writes through to the operating system, and gives the file its time back: with another one all marks would count as
  // those of an earlier script when it is opened next. False when no file is open or it could not be written; the
  // marks of before are then in it.
  [[nodiscard]] bool Save(const PageHighlights& page) noexcept;

 private:
  HighlightNotePath notePath_;
  platform::FileStream file_;
  platform::FileTime time_;
  bool hasTime_ = false;
};

}  // namespace tavimo::pages
