// Times and byte counts of sound: the one place where milliseconds become bytes and bytes become milliseconds.
// Knows no file; where the sound begins is an argument.
#pragma once

#include <cstdint>

#include "core/pcm_format.h"

namespace tavimo::core {

// The time of so many bytes, truncated toward zero; 0 when there are no bytes per second. The product comes before the
// division, so that the rounding is the same everywhere.
[[nodiscard]] std::int32_t BytesToTime(std::int32_t byteCount, double bytesPerSecond) noexcept;

// The byte count of a time, truncated and then made even, both toward zero. Even, not a multiple of the frame: 16-bit
// stereo can be positioned between its two channels.
[[nodiscard]] std::int32_t TimeToEvenBytes(const PcmFormat& format, std::int64_t timeMs) noexcept;

// The time of a file offset; an offset before the sound counts as its beginning.
[[nodiscard]] std::int32_t FileOffsetToTime(const PcmFormat& format, std::int32_t dataOffset,
                                            std::int32_t fileOffset) noexcept;

// The file offset of a time, not held to the sound: a negative time lies before it, a late one past its end.
[[nodiscard]] std::int32_t TimeToFileOffset(const PcmFormat& format, std::int32_t dataOffset,
                                            std::int32_t timeMs) noexcept;

}  // namespace tavimo::core
