#include "pages/page_file.h"

#include <algorithm>

#include "core/arithmetic.h"
#include "core/little_endian.h"

namespace tavimo::pages {

void PageFileWriter::Add(PageEntry entry) noexcept {
  if (pieceBytes_ == piece_.size()) WritePiece();
  core::WriteU32(piece_.data() + pieceBytes_, entry.text_offset);
  core::WriteU32(piece_.data() + pieceBytes_ + 4, entry.first_word);
  pieceBytes_ += kPageEntryBytes;
}

bool PageFileWriter::Finish() noexcept {
  WritePiece();
  return file_.Commit(platform::ReplacementFile::Durability::Cached);
}

void PageFileWriter::WritePiece() noexcept {
  file_.Write(piece_.data(), static_cast<std::int64_t>(pieceBytes_));
  pieceBytes_ = 0;
}

std::int32_t CountPages(const platform::FileStream& pageFile) noexcept {
  return core::HoldToInt32(pageFile.Length() / static_cast<std::int64_t>(kPageEntryBytes) - 1);
}

std::int32_t ReadEntries(platform::FileStream& pageFile, std::span<PageEntry> entries) noexcept {
  std::array<std::uint8_t, 16384> piece;
  std::size_t count = 0;
  while (count < entries.size()) {
    const std::size_t wanted = std::min((entries.size() - count) * kPageEntryBytes, piece.size());
    const std::int64_t got = pageFile.Read(piece.data(), static_cast<std::int64_t>(wanted));
    for (std::int64_t at = 0; at + 8 <= got; at += 8) {
      entries[count++] = {core::ReadU32(piece.data() + at), core::ReadU32(piece.data() + at + 4)};
    }
    if (got < static_cast<std::int64_t>(wanted)) break;
  }
  return static_cast<std::int32_t>(count);
}

}  // namespace tavimo::pages
