// RIFF chunks over a byte stream. Sizes are held to 32 bits, as the format has them; what goes beyond is refused.
#include "platform/riff.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

namespace tavimo::platform {

namespace {

//   offset  size  content
//        0     4  id
//        4     4  size, little-endian
//        8     4  form type, in "RIFF" and "LIST" chunks only
constexpr std::size_t kHeaderBytes = 8;
constexpr std::size_t kContainerHeaderBytes = 12;
constexpr std::uint32_t kRiff = FourCc("RIFF");
constexpr std::uint32_t kList = FourCc("LIST");

// No header begins behind this offset: its data would lie where 32 bits do not reach.
constexpr std::int64_t kLastHeaderOffset =
    std::numeric_limits<std::uint32_t>::max() - static_cast<std::int64_t>(kContainerHeaderBytes);

// Of a field that the file cuts short, the bytes that are there.
std::uint32_t LoadField(std::span<const unsigned char> header, std::size_t offset) {
  std::uint32_t value = 0;
  for (std::size_t i = std::min(header.size(), offset + 4); i > offset; --i) value = value << 8 | header[i - 1];
  return value;
}

void StoreField(std::uint32_t value, unsigned char* bytes) {
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

bool IsContainer(std::uint32_t id) { return id == kRiff || id == kList; }

// REQUIRES: the header has kHeaderBytes bytes; headerOffset <= kLastHeaderOffset.
ChunkInfo ChunkAt(std::span<const unsigned char> header, std::int64_t headerOffset) {
  ChunkInfo chunk;
  chunk.id = LoadField(header, 0);
  chunk.size = LoadField(header, 4);
  if (IsContainer(chunk.id)) chunk.formType = LoadField(header, kHeaderBytes);
  chunk.dataOffset = static_cast<std::uint32_t>(headerOffset) + static_cast<std::uint32_t>(kHeaderBytes);
  return chunk;
}

// Where the chunks of a container and the bytes of any other chunk begin, also past the end of a file that is cut short.
std::int64_t FirstByte(const ChunkInfo& chunk) {
  return std::int64_t{chunk.dataOffset} + (IsContainer(chunk.id) ? 4 : 0);
}

// Chunk headers read through a window, so that a file of a million tiny chunks costs thousands of reads, not millions.
class HeaderWindow {
 public:
  explicit HeaderWindow(FileStream& stream) : stream_(stream) {}

  // The header at an offset, shorter where the file ends.
  std::span<const unsigned char> At(std::int64_t offset) {
    if (offset < start_ || offset + static_cast<std::int64_t>(kContainerHeaderBytes) > start_ + byteCount_)
      Fill(offset);
    const auto skipped = static_cast<std::size_t>(offset - start_);
    const std::size_t available = static_cast<std::size_t>(byteCount_) - skipped;
    return std::span(bytes_).subspan(skipped, std::min(available, kContainerHeaderBytes));
  }

 private:
  void Fill(std::int64_t offset) {
    stream_.Seek(offset, SeekFrom::Start);
    start_ = offset;
    byteCount_ = std::max<std::int64_t>(stream_.Read(bytes_.data(), std::ssize(bytes_)), 0);
  }

  FileStream& stream_;
  std::int64_t start_ = 0;
  std::int64_t byteCount_ = 0;
  std::array<unsigned char, 4096> bytes_;
};

// The descriptor is filled also when the header cannot be written.
bool WriteHeader(FileStream& stream, ChunkInfo& chunk, std::size_t headerBytes) {
  const std::int64_t headerOffset = stream.Position();
  chunk.dataOffset = static_cast<std::uint32_t>(headerOffset) + static_cast<std::uint32_t>(kHeaderBytes);
  chunk.flags = kChunkDirty;
  unsigned char header[kContainerHeaderBytes];
  StoreField(chunk.id, header);
  StoreField(chunk.size, header + 4);
  StoreField(chunk.formType, header + kHeaderBytes);
  return headerOffset <= kLastHeaderOffset && stream.Write(header, static_cast<std::int64_t>(headerBytes));
}

// The size is written also when there is no room for the pad byte: the header lies in the file already, and a tape whose
// size is right can be played.
bool FinishCreated(FileStream& stream, ChunkInfo& chunk) {
  const std::int64_t size = stream.Position() - chunk.dataOffset;
  if (size < 0 || size > std::numeric_limits<std::uint32_t>::max() || chunk.dataOffset < kHeaderBytes) return false;
  chunk.size = static_cast<std::uint32_t>(size);
  const bool isPadded = size % 2 == 0 || stream.Write("", 1);
  unsigned char field[4];
  StoreField(chunk.size, field);
  stream.Seek(std::int64_t{chunk.dataOffset} - 4, SeekFrom::Start);
  const bool isSized = stream.Write(field, sizeof field);
  stream.Seek(chunk.dataOffset + size + size % 2, SeekFrom::Start);
  if (isPadded && isSized) chunk.flags &= ~kChunkDirty;
  return isPadded && isSized;
}

}  // namespace

RiffFile RiffFile::Open(const char* path, OpenMode mode) noexcept {
  RiffFile file;
  file.stream_ = FileStream::Open(path, mode);
  return file;
}

bool RiffFile::Descend(ChunkInfo& chunk) noexcept {
  const std::int64_t headerOffset = Position();
  if (headerOffset > kLastHeaderOffset) return false;
  unsigned char header[kContainerHeaderBytes];
  const std::int64_t byteCount = stream_.Read(header, sizeof header);
  stream_.Seek(headerOffset, SeekFrom::Start);
  if (byteCount < static_cast<std::int64_t>(kHeaderBytes)) return false;
  chunk = ChunkAt({header, static_cast<std::size_t>(byteCount)}, headerOffset);
  stream_.Seek(FirstByte(chunk), SeekFrom::Start);
  return true;
}

bool RiffFile::Find(ChunkInfo& chunk, const ChunkInfo& parent) noexcept {
  std::int64_t offset = Position();
  if (offset < parent.dataOffset) return false;
  // A sum that does not fit in 32 bits wraps, and then nothing lies inside: so the format's readers have always done.
  const std::int64_t end = std::min<std::int64_t>(parent.dataOffset + parent.size, kLastHeaderOffset);
  HeaderWindow window(stream_);
  bool isFound = false;
  while (offset < end && !isFound) {
    const std::span<const unsigned char> header = window.At(offset);
    if (header.size() < kHeaderBytes) break;
    const ChunkInfo next = ChunkAt(header, offset);
    isFound = next.id == chunk.id;
    if (isFound) chunk = next;
    // The pad byte of an odd size is skipped too. A size of 0xFFFFFFFF wraps to an empty chunk, and one that leads back
    // ends the walk.
    const std::uint32_t behind = next.dataOffset + ((next.size + 1u) & ~1u);
    if (!isFound && behind <= offset) break;
    offset = isFound ? FirstByte(next) : behind;
  }
  stream_.Seek(offset, SeekFrom::Start);
  return isFound;
}

bool RiffFile::CreateRiff(ChunkInfo& chunk) noexcept {
  chunk.id = kRiff;
  return WriteHeader(stream_, chunk, kContainerHeaderBytes);
}

bool RiffFile::CreateChunk(ChunkInfo& chunk) noexcept { return WriteHeader(stream_, chunk, kHeaderBytes); }

bool RiffFile::Ascend(ChunkInfo& chunk) noexcept {
  if ((chunk.flags & kChunkDirty) != 0) return FinishCreated(stream_, chunk);
  // Where the end does not fit in the 31 bits of a file position the position stays, which is no failure.
  const std::int64_t end = chunk.dataOffset + ((std::int64_t{chunk.size} + 1) & ~std::int64_t{1});
  if (end <= std::numeric_limits<std::int32_t>::max()) stream_.Seek(end, SeekFrom::Start);
  return true;
}

std::int32_t RiffFile::Read(void* buffer, std::int32_t byteCount) noexcept {
  return static_cast<std::int32_t>(stream_.Read(buffer, byteCount));
}

std::int32_t RiffFile::Write(const void* bytes, std::int32_t byteCount) noexcept {
  return stream_.Write(bytes, byteCount) ? byteCount : -1;
}

std::int64_t RiffFile::Seek(std::int64_t offset, SeekFrom origin) noexcept {
  if (origin != SeekFrom::End) return stream_.Seek(offset, origin);
  return offset == std::numeric_limits<std::int64_t>::min() ? -1 : stream_.Seek(-offset, origin);
}

}  // namespace tavimo::platform
