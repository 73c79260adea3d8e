#include "recording/level_meter.h"

#include <cstddef>
#include <cstdlib>

#include "core/little_endian.h"

namespace tavimo::recording {

std::int32_t AverageLevel8(std::span<const std::uint8_t> samples) noexcept {
  if (samples.empty()) return 0;
  std::int64_t sum = 0;
  for (const std::uint8_t sample : samples) sum += std::abs(sample - 128);
  return static_cast<std::int32_t>(sum / static_cast<std::int64_t>(samples.size()));
}

std::int32_t AverageLevel16(std::span<const std::uint8_t> sampleBytes) noexcept {
  const std::size_t count = sampleBytes.size() / 2;
  if (count == 0) return 0;
  std::int64_t sum = 0;
  for (std::size_t i = 0; i < count; ++i) {
    sum += std::abs(static_cast<std::int16_t>(core::ReadU16(sampleBytes.data() + 2 * i)));
  }
  return static_cast<std::int32_t>(sum / static_cast<std::int64_t>(count) / 256);
}

}  // namespace tavimo::recording
