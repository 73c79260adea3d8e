// The input level of a block of sound: the mean distance from silence, 0 to 128.
#pragma once

#include <cstdint>
#include <span>

namespace tavimo::recording {

// Unsigned 8-bit samples: the mean of |sample - 128|, truncated. 128 only when every sample is 0. 0 for no samples.
[[nodiscard]] std::int32_t AverageLevel8(std::span<const std::uint8_t> samples) noexcept;

// Signed 16-bit little-endian samples, two bytes each: the mean of |sample|, truncated, then a 256th of it.
[[nodiscard]] std::int32_t AverageLevel16(std::span<const std::uint8_t> sampleBytes) noexcept;

}  // namespace tavimo::recording
