// RIFF files: chunks found, entered, created and left, with a position that moves as bytes are read and written.
// Knows nothing of wave formats, nor of what a chunk holds.
//
// A RIFF file (IBM and Microsoft, Multimedia Programming Interface 1.0, 1991, chapter 2):
//
//   offset  size  content
//        0     4  "RIFF"
//        4     4  bytes that follow this field, little-endian
//        8     4  form type, for example "WAVE"
//       12     …  chunks: id (4), size (4, little-endian), size bytes, one zero byte when the size is odd
//
// Callers guarantee: one thread at a time; a descriptor handed to Ascend was filled by this file.
// This layer checks: every header against the file; sizes are reported as stored, so callers check them before use.
#pragma once

#include <cstdint>

#include "platform/files.h"

namespace tavimo::platform {

constexpr std::uint32_t FourCc(const char (&text)[5]) noexcept {
  std::uint32_t id = 0;
  for (int i = 3; i >= 0; --i) id = id << 8 | static_cast<unsigned char>(text[i]);
  return id;
}

// What is known of one chunk; five 32-bit fields as the platform's own record has them.
struct ChunkInfo {
  std::uint32_t id = 0;
  std::uint32_t size = 0;        // as stored, not held to the file
  std::uint32_t formType = 0;    // of "RIFF" and "LIST" chunks
  std::uint32_t dataOffset = 0;  // from the start of the file; of a RIFF chunk that of the form type
  std::uint32_t flags = 0;
};
static_assert(sizeof(ChunkInfo) == 20);

// Set in a chunk that was created: leaving it writes its size.
inline constexpr std::uint32_t kChunkDirty = 0x10000000;

class RiffFile {
 public:
  // A file that is not open when it cannot be opened.
  [[nodiscard]] static RiffFile Open(const char* path, OpenMode mode) noexcept;
  [[nodiscard]] bool IsOpen() const noexcept { return stream_.IsOpen(); }

  // Reads the chunk header at the position. False when the file has less than a header there.
  [[nodiscard]] bool Descend(ChunkInfo& chunk) noexcept;

  // Searches chunk.id from the position on among the chunks of parent; false when it is not there, the walk runs out of
  // the file or the parent, or a size would lead it back. Found: the position is the chunk's first byte.
  [[nodiscard]] bool Find(ChunkInfo& chunk, const ChunkInfo& parent) noexcept;

  // Writes a header with a provisional size: chunk.formType or chunk.id and chunk.size as given.
  [[nodiscard]] bool CreateRiff(ChunkInfo& chunk) noexcept;
  [[nodiscard]] bool CreateChunk(ChunkInfo& chunk) noexcept;

  // Leaves a chunk. A created one gets its size, from its first byte to the position, and a zero byte after an odd one;
  // a found one only moves the position behind it, if that is one of 31 bits. False when a write fails or the position
  // lies before a created chunk.
  bool Ascend(ChunkInfo& chunk) noexcept;

  // Bytes moved at the position, not held to the chunk; -1 for a failure or a negative count.
  std::int32_t Read(void* buffer, std::int32_t byteCount) noexcept;
  std::int32_t Write(const void* bytes, std::int32_t byteCount) noexcept;

  // Copies from another file's position to this one's; see FileStream::CopyFrom.
  [[nodiscard]] std::int64_t CopyFrom(RiffFile& source, std::int64_t byteCount) noexcept {
    return stream_.CopyFrom(source.stream_, byteCount);
  }

  // The new position, or -1. From the end, offset counts backwards.
  std::int64_t Seek(std::int64_t offset, SeekFrom origin) noexcept;
  [[nodiscard]] std::int64_t Position() const noexcept { return stream_.Position(); }
  [[nodiscard]] std::int64_t Length() const noexcept { return stream_.Length(); }
  bool Close() noexcept { return stream_.Close(); }

 private:
  FileStream stream_;
};

}  // namespace tavimo::platform
