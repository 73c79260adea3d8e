// Copying a stretch of time of one wave file into a new one.
#pragma once

#include <cstdint>

namespace tavimo::waveedit {

// Writes the source's sound from startMs to endMs, both included, to the destination in the source's format: the bytes
// of endMs - startMs + 1 ms plus 64, from file position 64 plus the bytes of startMs, but no more than there are.
// buffer is work space of bufferBytes; a larger one makes the copy faster. 1 when the copy ran, even if it copied
// nothing; -1 when the source cannot be opened, the destination cannot be created, both are the same file, or a path is
// longer than 199 bytes: nothing is created then.
[[nodiscard]] std::int32_t CopyWaveSegment(const char* sourcePath, const char* destinationPath, std::uint32_t startMs,
                                           std::uint32_t endMs, void* buffer, std::int32_t bufferBytes) noexcept;

}  // namespace tavimo::waveedit
