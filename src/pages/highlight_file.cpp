#include "pages/highlight_file.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "core/arithmetic.h"
#include "core/little_endian.h"
#include "hostutil/file_utilities.h"
#include "pages/script_scrambling.h"
#include "pages/script_window.h"
#include "pages/word_count.h"
#include "platform/utility.h"

namespace tavimo::pages {

namespace {

constexpr std::int64_t kWordsPerByte = 4;

// A word that the end of the script cuts is not counted: the room for one more is there.
bool CountScriptWords(platform::FileStream& script, Scrambling scrambling, std::int64_t& wordCount) noexcept {
  ScriptWindow window(script, scrambling);
  WordCounter words;
  for (;;) {
    if (!window.Fill(1)) return false;
    const std::span<const std::uint8_t> ahead = window.Ahead();
    if (ahead.empty()) break;
    words.Add(ahead);
    window.Pass(ahead.size());
  }
  wordCount = words.Closed();
  return true;
}

bool WriteZeros(const char* path, std::int64_t byteCount) noexcept {
  constexpr std::array<std::uint8_t, 4096> kZeros{};
  platform::ReplacementFile file;
  if (!file.Begin(path)) return false;
  for (std::int64_t left = byteCount; left > 0; left -= static_cast<std::int64_t>(kZeros.size())) {
    file.Write(kZeros.data(), std::min<std::int64_t>(left, kZeros.size()));
  }
  return file.Commit(platform::ReplacementFile::Durability::Cached);
}

void MakeHighlightFile(const char* scriptPath, const char* highlightPath) noexcept {
  platform::FileStream script = platform::FileStream::Open(scriptPath, platform::OpenMode::Read);
  std::int64_t wordCount = 0;
  if (!script.IsOpen() || !CountScriptWords(script, ScramblingByName(scriptPath), wordCount)) return;
  script.Close();
  // A read-only file could not be replaced, and the marks of the earlier script would be taken for this one's.
  platform::ResetAttributes(highlightPath);
  if (WriteZeros(highlightPath, (wordCount + 1) / kWordsPerByte + 1)) {
    platform::SetSameFileTime(scriptPath, highlightPath);
  }
}

// Empty for no path.
HighlightNotePath NotePathOf(const char* highlightPath) noexcept {
  HighlightNotePath path;
  const std::string_view highlights = core::TextOf(highlightPath);
  if (!highlights.empty()) static_cast<void>(path.Assign(highlights, std::string_view("~")));
  return path;
}

constexpr std::size_t kNoteBytes = 8;
using Note = std::array<std::uint8_t, kNoteBytes>;

Note NoteOf(platform::FileTime time) noexcept {
  Note note;
  const auto value = static_cast<std::uint64_t>(time.value);
  core::WriteU32(note.data(), static_cast<std::uint32_t>(value));
  core::WriteU32(note.data() + 4, static_cast<std::uint32_t>(value >> 32));
  return note;
}

// A longer file has the name by chance, an editor's copy perhaps, and is left alone.
bool MayBeNote(const HighlightNotePath& path) noexcept {
  const platform::FileStream file = platform::FileStream::Open(path.CString(), platform::OpenMode::Read);
  return file.IsOpen() && file.Length() <= std::int64_t{kNoteBytes};
}

void RemoveNote(const HighlightNotePath& path) noexcept {
  if (MayBeNote(path)) platform::RemoveFile(path.CString());
}

// Without a note the marks are written all the same: the folder may take no new file.
void WriteNote(const HighlightNotePath& path, platform::FileTime time) noexcept {
  RemoveNote(path);  // so that the name is never a link, through which another file would be written
  if (hostutil::FileExists(path.CString())) return;
  const Note note = NoteOf(time);
  platform::FileStream file = platform::FileStream::Open(path.CString(), platform::OpenMode::Create);
  static_cast<void>(file.Write(note.data(), kNoteBytes));
}

enum class NoteSays {
  Nothing,       // also a cut note: the program was stopped before the marks
  OnlyTimeGone,  // the marks were written for this very script, and the program was stopped before the file had its time
  CannotBeTold,  // it is there and cannot be read now
};

NoteSays ReadNote(const char* scriptPath, const HighlightNotePath& notePath) noexcept {
  if (!hostutil::FileExists(notePath.CString())) return NoteSays::Nothing;
  platform::FileStream file = platform::FileStream::Open(notePath.CString(), platform::OpenMode::Read);
  Note note;
  const std::int64_t got = file.IsOpen() ? file.Read(note.data(), kNoteBytes) : -1;
  if (got < 0) return NoteSays::CannotBeTold;
  platform::FileTime time;
  const bool isThisScript =
      got == std::int64_t{kNoteBytes} && platform::GetLastWriteTime(scriptPath, time) && note == NoteOf(time);
  return isThisScript ? NoteSays::OnlyTimeGone : NoteSays::Nothing;
}

// The bytes from the first to the last that differ; both have one length.
struct Difference {
  std::size_t begin;
  std::size_t end;
};

Difference DifferenceOf(std::span<const std::uint8_t> left, std::span<const std::uint8_t> right) noexcept {
  std::size_t begin = 0;
  std::size_t end = left.size();
  while (begin < end && left[begin] == right[begin]) ++begin;
  while (end > begin && left[end - 1] == right[end - 1]) --end;
  return {begin, end};
}

bool WriteAt(platform::FileStream& file, std::int64_t offset, std::span<const std::uint8_t> bytes) noexcept {
  return file.Seek(offset, platform::SeekFrom::Start) >= 0 &&
         file.Write(bytes.data(), static_cast<std::int64_t>(bytes.size()));
}

// Only what changes, a byte as a rule, which cannot be written by half. When more is and the disk takes a part, the bytes of
// before go back. Where they cannot be read, nothing is written: there would be none to go back to.
bool WriteMarks(platform::FileStream& file, const PageHighlights& page) noexcept {
  PageHighlights before(page.FirstWord(), page.WordCount());
  const std::span<std::uint8_t> old = before.Bytes();
  if (file.Seek(page.FileOffset(), platform::SeekFrom::Start) < 0) return false;
  const std::int64_t got = file.Read(old.data(), static_cast<std::int64_t>(old.size()));
  if (got < 0) return false;
  auto [begin, end] = DifferenceOf(old, page.Bytes());
  if (got < static_cast<std::int64_t>(old.size())) end = old.size();  // the file grows to the end of the page
  const std::int64_t place = page.FileOffset() + static_cast<std::int64_t>(begin);
  if (WriteAt(file, place, page.Bytes().subspan(begin, end - begin))) return true;
  static_cast<void>(WriteAt(file, place, old.subspan(begin, end - begin)));
  return false;
}

}  // namespace

void EnsureHighlightFile(const char* scriptPath, const char* highlightPath) noexcept {
  const HighlightNotePath notePath = NotePathOf(highlightPath);
  const bool isThere = hostutil::FileExists(highlightPath);
  if (!isThere || !platform::IsSameTimeFiles(scriptPath, highlightPath)) {
    // Marks that the note vouches for are never made anew, even where the time cannot be set.
    const NoteSays says = isThere ? ReadNote(scriptPath, notePath) : NoteSays::Nothing;
    if (says == NoteSays::OnlyTimeGone) platform::SetSameFileTime(scriptPath, highlightPath);
    if (says == NoteSays::Nothing) MakeHighlightFile(scriptPath, highlightPath);
  }
  // The note is still needed where the file could not be made current: the script may be on a disc that is out.
  if (platform::IsSameTimeFiles(scriptPath, highlightPath)) RemoveNote(notePath);
}

bool IsHighlightNote(const char* path, const char* highlightPath) noexcept {
  const HighlightNotePath notePath = NotePathOf(highlightPath);
  return platform::IsSameFile(path, notePath.CString());
}

bool HighlightFile::Open(const char* path) noexcept {
  platform::ResetAttributes(path);
  notePath_ = NotePathOf(path);
  file_ = platform::FileStream::Open(path, platform::OpenMode::ReadWrite);
  hasTime_ = file_.GetLastWriteTime(time_);
  return file_.IsOpen();
}

std::int32_t HighlightFile::WordSlots() const noexcept {
  return core::HoldToInt32(std::max<std::int64_t>(file_.Length(), 0) * kWordsPerByte);
}

bool HighlightFile::Read(PageHighlights& page) noexcept {
  if (file_.Seek(page.FileOffset(), platform::SeekFrom::Start) < 0) return true;
  const std::span<std::uint8_t> bytes = page.Bytes();
  // Bytes that a short read leaves are as they were: zero.
  return file_.Read(bytes.data(), static_cast<std::int64_t>(bytes.size())) >= 0;
}

bool HighlightFile::Save(const PageHighlights& page) noexcept {
  if (!file_.IsOpen()) return false;
  if (hasTime_) WriteNote(notePath_, time_);
  const bool isWritten = WriteMarks(file_, page);
  const bool isMissingTime = hasTime_ && !file_.SetLastWriteTime(time_);
  if (!isMissingTime) RemoveNote(notePath_);
  return isWritten;
}

}  // namespace tavimo::pages
