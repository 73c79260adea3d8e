// The way into a wave file, and the beginning of a new one: its RIFF chunk, its format and its sound, one step after
// another, each failure told apart. What a format must be (its tag, channels, bits) is the caller's to say.
#pragma once

#include "core/pcm_format.h"
#include "platform/riff.h"

namespace tavimo::core {

enum class WaveFault {
  None,
  NoFirstChunk,      // less than a chunk header at the start of the file
  NotWave,           // the first chunk is not "RIFF", or its form type not "WAVE"
  NoFormatChunk,     // no "fmt " inside it
  ShortFormatChunk,  // "fmt " is shorter than 16 bytes
  FormatUnreadable,  // the file ends inside the 16 bytes
  FormatNotLeft,     // the end of "fmt " could not be reached
  NoDataChunk,       // no "data" behind "fmt "
};

// Enters riff at the start of the file, reads the format and leaves its chunk. format is written as soon as its 16
// bytes are read, also when a later step fails. REQUIRES: file is open and at its start.
[[nodiscard]] WaveFault EnterFormat(platform::RiffFile& file, platform::ChunkInfo& riff, platform::ChunkInfo& sub,
                                    PcmFormat& format) noexcept;

// Finds the sound; the position is then its first byte. REQUIRES: EnterFormat gave None.
[[nodiscard]] WaveFault EnterData(platform::RiffFile& file, const platform::ChunkInfo& riff,
                                  platform::ChunkInfo& sub) noexcept;

// How long the "fmt " chunk of a new file is: the bare record, or the record with an empty extension behind it.
enum class FormatChunk : std::uint32_t { Plain = kPcmFormatBytes, Extended = kPcmFormatBytes + 2 };

enum class CreateFault {
  None,
  NoRiffChunk,    // "RIFF" could not be created
  NoFormatChunk,  // nor "fmt "
  FormatUnwritten,
  FormatNotLeft,
  NoDataChunk,
};

// Writes the chunks of a new wave file up to the beginning of its sound; leaving data and riff gives them their sizes.
// REQUIRES: file was just created; both descriptors are cleared.
[[nodiscard]] CreateFault CreateWave(platform::RiffFile& file, platform::ChunkInfo& riff, platform::ChunkInfo& sub,
                                     const PcmFormat& format, FormatChunk formatChunk) noexcept;

}  // namespace tavimo::core
