// Reading the sound of one wave file block by block, or writing a new wave file block by block, each file described by
// a record of its caller's. Independent of the one open tape; several records can be open at once, on any thread.
//
// A file that is written:
//
//   offset  size  content (numbers little-endian)
//        0     4  "RIFF"
//        4     4  file length minus 8
//        8     4  "WAVE"
//       12     4  "fmt "
//       16     4  16
//       20    16  the format record
//       36     4  "data"
//       40     4  bytes of sound
//       44     n  the sound; one zero byte follows when n is odd
//
// Results are 1 and -1 as the operations are known by; nothing shows a message.
#pragma once

#include <cstdint>

#include "core/fixed_text.h"
#include "core/pcm_format.h"
#include "platform/riff.h"

namespace tavimo::waveedit {

using WavePath = core::FixedText<199>;

struct WaveDataFile {
  WavePath path;  // given by the caller before opening or creating
  platform::ChunkInfo subChunk;
  platform::ChunkInfo riffChunk;
  core::PcmFormat format;  // read by opening; given by the caller before creating
  platform::RiffFile mmioHandle;
  std::int32_t dataLength = 0;  // of the data chunk, as its header says; negative from 2 GiB on
  std::int32_t dataOffset = 0;  // file offset of the first sound byte
  bool failed = false;  // a write, copy or seek did not do what was asked, or a created file could not be finished
};

struct WaveInfo {
  std::int32_t channels = 0;
  std::int32_t bitsPerSample = 0;
  std::int32_t sampleRate = 0;
  std::int32_t dataLength = 0;  // bytes of sound
  std::int32_t durationMs = 0;  // 0 for a format without bytes per second
};

// 1, positioned at the first sound byte; -1 for anything but a RIFF/WAVE file of 1 or 2 channels with a "fmt " chunk of
// at least 16 bytes and a "data" chunk. Format tag and bits per sample are the caller's to test.
[[nodiscard]] std::int32_t WaveDataOpen(WaveDataFile& file) noexcept;

// 1, positioned at the start of the empty sound; -1 when the file cannot be created. Truncates an existing file.
[[nodiscard]] std::int32_t WaveDataCreate(WaveDataFile& file) noexcept;

// Bytes read, never past the end of the sound; 0 when nothing is left or byteCount is not positive, -1 when reading
// fails.
std::int32_t WaveDataRead(WaveDataFile& file, void* buffer, std::int32_t byteCount) noexcept;

void WaveDataWrite(WaveDataFile& file, const void* bytes, std::int32_t byteCount) noexcept;

// Copies sound from one file's position to another's, never past the end of the sound. What cannot be copied though the
// source should hold it marks a file as failed.
void WaveDataCopy(WaveDataFile& source, WaveDataFile& destination, std::int64_t byteCount) noexcept;

// Origin 0: offset into the sound; 1: from the position; any other: backwards from the end of the file.
void WaveDataSeek(WaveDataFile& file, std::int32_t offset, std::int32_t origin) noexcept;

// To the absolute file position that TimeToSegmentOffset gives.
void WaveDataSeekTime(WaveDataFile& file, std::int32_t timeMs) noexcept;

// Finishes and closes the file if one is open; a created file gets its sizes.
void WaveDataClose(WaveDataFile& file) noexcept;

// The even byte count of a time plus a fixed allowance of 64 bytes, which stands for a header whatever the file's own.
[[nodiscard]] std::int32_t TimeToSegmentOffset(const core::PcmFormat& format, std::int32_t timeMs) noexcept;

// What an open record says of its file.
[[nodiscard]] WaveInfo InfoOf(const WaveDataFile& file) noexcept;

// 1, or -1 when the file cannot be opened; the output is then untouched.
[[nodiscard]] std::int32_t ReadWaveFormat(const char* path, core::PcmFormat& format) noexcept;
[[nodiscard]] std::int32_t ReadWaveInfo(const char* path, WaveInfo& info) noexcept;

}  // namespace tavimo::waveedit
