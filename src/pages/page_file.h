// The page file: where each page of a script begins, in entries of 8 bytes.
//
//   offset  size  content
//   8 k     4     where page k begins and page k - 1 ends, in bytes from the start of the script
//   8 k + 4 4     words counted before that: the number of the first word of page k
//
// Entry 0 is (0, 0), and the last one is the end of the last page: one entry more than there are pages.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/files.h"
#include "tavimo.h"

namespace tavimo::pages {

using PageEntry = VcPageIndexEntry;
inline constexpr std::size_t kPageEntryBytes = 8;
static_assert(sizeof(PageEntry) == kPageEntryBytes);

// Writes entries in pieces to a file that is put in place whole.
class PageFileWriter {
 public:
  [[nodiscard]] bool Begin(const char* path) noexcept { return file_.Begin(path); }
  void Add(PageEntry entry) noexcept;
  [[nodiscard]] bool Finish() noexcept;

 private:
  void WritePiece() noexcept;

  platform::ReplacementFile file_;
  std::array<std::uint8_t, 16384> piece_;
  std::size_t pieceBytes_ = 0;
};

// Pages by the file's size; -1 for an empty file. REQUIRES: the file is open.
[[nodiscard]] std::int32_t CountPages(const platform::FileStream& pageFile) noexcept;

// Reads whole entries from the file's position on; how many there were.
std::int32_t ReadEntries(platform::FileStream& pageFile, std::span<PageEntry> entries) noexcept;

}  // namespace tavimo::pages
