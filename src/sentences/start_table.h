// Tables of sentence starts in files: unsigned 32-bit little-endian milliseconds, one behind another. "tmp.sen" and mark
// index files are nothing else; a study file has one behind its bookmarks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/files.h"

namespace tavimo::sentences {

// Writes a table in pieces to a file that is put in place whole.
class StartTableWriter {
 public:
  [[nodiscard]] bool Begin(const char* path) noexcept { return file_.Begin(path); }
  // Bytes that stand before the table.
  void AddHeader(std::span<const std::uint8_t> bytes) noexcept;
  void Add(std::uint32_t startMs) noexcept;
  void Add(const std::uint32_t* startsMs, std::int32_t count) noexcept;
  [[nodiscard]] std::int32_t Count() const noexcept { return count_; }
  [[nodiscard]] bool Finish(platform::ReplacementFile::Durability durability) noexcept;
  void Abandon() noexcept { file_.Discard(); }

 private:
  void WritePiece() noexcept;

  platform::ReplacementFile file_;
  std::array<std::uint8_t, 16384> piece_;
  std::size_t pieceBytes_ = 0;
  std::int32_t count_ = 0;
};

// Reads count values from the stream's position on. A value of which the file holds only a part, or nothing, stays as
// it was in the array.
void ReadStarts(platform::FileStream& file, std::uint32_t* startsMs, std::int32_t count) noexcept;

}  // namespace tavimo::sentences
