// Tape files: the wave files that receive the learner's voice. Made with an exact 46-byte header, opened for appending
// with every check told apart, and saved under their lasting name. Capture writes the sound; core closes the tape.
//
//   offset  size  content of a new tape (numbers little-endian)
//        0     4  "RIFF"
//        4     4  file length - 8; 0 until the tape is closed
//        8     4  "WAVE"
//       12     4  "fmt "
//       16     4  18
//       20    16  the format record
//       36     2  0 (extra format bytes)
//       38     4  "data"
//       42     4  bytes of sound; 18 until the tape is closed
//       46     …  sound
#pragma once

#include <cstdint>
#include <span>

#include "core/current_wave_file.h"
#include "core/pcm_format.h"
#include "core/tape_format.h"

namespace tavimo::recording {

// Sets every field of the recording format, whatever the values: devices refuse what makes no sense.
void SetTapeFormat(core::TapeFormat& format, std::int32_t rate, std::int32_t bits, std::int32_t channels) noexcept;

// False for channels or bits that a device's 16-bit fields cannot tell.
[[nodiscard]] bool FitsDevice(const core::TapeFormat& format) noexcept;

enum class TapeFault {
  None,
  CannotCreate,
  CannotCreateRiff,
  CannotCreateFormat,
  CannotWriteFormat,
  CannotLeaveFormat,
  CannotCreateData,
  CannotRead,
  CannotWrite,
  NoFirstChunk,
  NotWave,
  NoFormatChunk,
  ShortFormatChunk,
  FormatUnreadable,
  FormatNotLeft,
  NotPcm,
  NoDataChunk,
};

// Creates the tape in the recording format, which becomes the current format; an existing file is truncated. After a
// fault behind CannotCreate the tape is left open as far as it came.
[[nodiscard]] TapeFault NewTape(const char* path, const core::TapeFormat& tapeFormat, core::CurrentWaveFile& tape,
                                core::PcmFormat& currentFormat) noexcept;

// Opens an existing wave file to record further into it. Its sound reaches to the end of the file, whatever its data
// chunk says and whatever chunks follow. After a fault no tape is open.
[[nodiscard]] TapeFault AppendTape(const char* path, core::CurrentWaveFile& tape,
                                   core::PcmFormat& currentFormat) noexcept;

// Writes a captured block at the tape's position. After a short write, on a full disk, the next block still stands where
// the counters say, and no channel changes places.
void WriteBlock(core::CurrentWaveFile& tape, std::span<const std::uint8_t> block) noexcept;

// Renames a closed tape, or copies it over what is at the destination and then deletes it. On false both files are as
// they were.
[[nodiscard]] bool SaveTape(const char* source, const char* destination) noexcept;

}  // namespace tavimo::recording
