// A two-channel wave file made one channel by keeping the first channel of every frame.
//
//   offset  size  content of the file that is written (numbers little-endian)
//        0    12  "RIFF", file length minus 8, "WAVE"
//       12     8  "fmt ", 18
//       20    16  the format record: the source's tag, 1 channel, its rate and bits
//       36     2  0 (extra format bytes)
//       38     8  "data", bytes of sound
//       46     n  the sound; one zero byte follows when n is odd
#pragma once

#include <cstdint>

#include "waveedit/transfer_buffers.h"

namespace tavimo::waveedit {

enum class MonoResult { Written, AlreadyMono, Failed };

// Failed before the destination is created: the source cannot be opened, is no wave file of 8 or 16 bits and 1 or 2
// channels, has a rate of 0, or is the destination itself. Failed afterwards: the destination cannot be written.
[[nodiscard]] MonoResult StereoToMono(const char* sourcePath, const char* destinationPath,
                                      TransferBuffers& buffers) noexcept;

}  // namespace tavimo::waveedit
