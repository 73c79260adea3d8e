// The one open tape: its position, and the ways it is finished and closed. Making and appending a tape is the business
// of recording.
#pragma once

#include <cstdint>

#include "platform/riff.h"

namespace tavimo::core {

struct CurrentWaveFile {
  platform::RiffFile mmioHandle;
  platform::ChunkInfo riffChunk;
  platform::ChunkInfo subChunk;   // first "fmt ", then "data"
  std::int32_t dataOffset = 0;    // file offset of the first sound byte
  std::int32_t dataLength = 0;    // sound bytes the data chunk holds, or will hold when the tape is closed
  std::int32_t filePosition = 0;  // file offset where recording goes on; not the stream's own position
};

// Moves both positions behind the last sound byte.
void GotoFileEnd(CurrentWaveFile& file) noexcept;

// Leaves the chunks and closes; chunks that were created get their final sizes.
void CloseThroughChunks(CurrentWaveFile& file) noexcept;

// Writes dataLength into the data chunk's size field and closes. The RIFF chunk's size and the file's length stay.
void CloseWithDataLength(CurrentWaveFile& file) noexcept;

}  // namespace tavimo::core
