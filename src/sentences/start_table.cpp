#include "sentences/start_table.h"

#include <algorithm>

#include "core/little_endian.h"

namespace tavimo::sentences {

namespace {
constexpr std::size_t kStartBytes = 4;
}  // namespace

void StartTableWriter::AddHeader(std::span<const std::uint8_t> bytes) noexcept {
  WritePiece();
  file_.Write(bytes.data(), static_cast<std::int64_t>(bytes.size()));
}

void StartTableWriter::Add(std::uint32_t startMs) noexcept {
  if (pieceBytes_ == piece_.size()) WritePiece();
  core::WriteU32(piece_.data() + pieceBytes_, startMs);
  pieceBytes_ += kStartBytes;
  ++count_;
}

void StartTableWriter::Add(const std::uint32_t* startsMs, std::int32_t count) noexcept {
  for (std::int32_t i = 0; i < count; ++i) Add(startsMs[i]);
}

bool StartTableWriter::Finish(platform::ReplacementFile::Durability durability) noexcept {
  WritePiece();
  return file_.Commit(durability);
}

void StartTableWriter::WritePiece() noexcept {
  if (pieceBytes_ > 0) file_.Write(piece_.data(), static_cast<std::int64_t>(pieceBytes_));
  pieceBytes_ = 0;
}

void ReadStarts(platform::FileStream& file, std::uint32_t* startsMs, std::int32_t count) noexcept {
  std::array<std::uint8_t, 16384> piece;
  if (startsMs == nullptr) return;
  while (count > 0) {
    const std::int64_t wanted = std::min<std::int64_t>(std::int64_t{count} * 4, piece.size());
    const std::int64_t got = file.Read(piece.data(), wanted);
    for (std::int64_t at = 0; at + 4 <= got; at += 4) *startsMs++ = core::ReadU32(piece.data() + at);
    if (got < wanted) return;
    count -= static_cast<std::int32_t>(wanted / 4);
  }
}

}  // namespace tavimo::sentences
