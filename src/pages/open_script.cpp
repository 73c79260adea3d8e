#include "pages/open_script.h"

#include <array>
#include <limits>
#include <span>

namespace tavimo::pages {

namespace {

// Whether two neighbouring entries can be the bounds of a page. A number of a word beyond the script's bytes is none: the
// highlight file would be made to grow to it.
bool AreBoundsOfAPage(const PageEntry& begin, const PageEntry& end, std::int64_t scriptBytes) noexcept {
  constexpr std::uint32_t kLargestNumber = std::numeric_limits<std::int32_t>::max();
  return begin.text_offset <= end.text_offset && end.text_offset - begin.text_offset <= kMaxPageBytes &&
         begin.first_word <= end.first_word && end.first_word - begin.first_word <= kMaxWordsCounted &&
         end.first_word <= kLargestNumber && begin.first_word <= scriptBytes;
}

// The bytes that were read, fewer at the end of the script; -1 when reading fails.
std::int64_t ReadText(platform::FileStream& script, Scrambling scrambling, const PageEntry& begin, const PageEntry& end,
                      PageText& text) noexcept {
  if (script.Seek(begin.text_offset, platform::SeekFrom::Start) < 0) return -1;
  const std::int64_t got = script.Read(text.data(), end.text_offset - begin.text_offset);
  if (got > 0) Unscramble(std::span(text).first(static_cast<std::size_t>(got)), begin.text_offset, scrambling);
  return got;
}

}  // namespace

bool OpenScriptFiles(const char* scriptPath, const char* pageFilePath, const char* highlightPath,
                     OpenScript& files) noexcept {
  using platform::FileStream;
  using platform::OpenMode;
  if (platform::IsSameFile(highlightPath, scriptPath) || platform::IsSameFile(highlightPath, pageFilePath))
    return false;
  if (IsHighlightNote(scriptPath, highlightPath) || IsHighlightNote(pageFilePath, highlightPath)) return false;
  EnsureHighlightFile(scriptPath, highlightPath);
  files.script = FileStream::Open(scriptPath, OpenMode::Read);
  if (!files.script.IsOpen()) return false;
  files.pageFile = FileStream::Open(pageFilePath, OpenMode::Read);
  return files.pageFile.IsOpen() && files.highlightFile.Open(highlightPath);
}

void CloseScriptFiles(OpenScript& files) noexcept {
  files.script.Close();
  files.pageFile.Close();
  files.highlightFile.Close();
}

bool ReadPage(OpenScript& files, Scrambling scrambling, std::int32_t pageIndex, CurrentPage& page) noexcept {
  std::array<PageEntry, 2> bounds;
  const std::int64_t offset = std::int64_t{pageIndex} * static_cast<std::int64_t>(kPageEntryBytes);
  if (files.pageFile.Seek(offset, platform::SeekFrom::Start) < 0) return false;
  if (ReadEntries(files.pageFile, bounds) != 2) return false;
  const auto& [begin, end] = bounds;
  if (!AreBoundsOfAPage(begin, end, files.script.Length())) return false;
  CurrentPage read;
  if (ReadText(files.script, scrambling, begin, end, read.text) < 0) return false;
  read.highlights = {static_cast<std::int32_t>(begin.first_word),
                     static_cast<std::int32_t>(end.first_word - begin.first_word)};
  if (!files.highlightFile.Read(read.highlights)) return false;
  page = read;
  return true;
}

}  // namespace tavimo::pages
