#include "core/time_model.h"

#include <algorithm>

#include "core/arithmetic.h"

namespace tavimo::core {

std::int32_t BytesToTime(std::int32_t byteCount, double bytesPerSecond) noexcept {
  if (bytesPerSecond == 0.0) return 0;
  return TruncateToInt32(byteCount * 1000.0 / bytesPerSecond);
}

std::int32_t TimeToEvenBytes(const PcmFormat& format, std::int64_t timeMs) noexcept {
  return EvenTowardZero(TruncateToInt32(BytesPerSecond(format) * 0.001 * static_cast<double>(timeMs)));
}

std::int32_t FileOffsetToTime(const PcmFormat& format, std::int32_t dataOffset, std::int32_t fileOffset) noexcept {
  const std::int32_t soundOffset = std::max(WrappingSubtract(fileOffset, dataOffset), std::int32_t{0});
  return BytesToTime(soundOffset, BytesPerSecond(format));
}

std::int32_t TimeToFileOffset(const PcmFormat& format, std::int32_t dataOffset, std::int32_t timeMs) noexcept {
  return HoldToInt32(std::int64_t{TimeToEvenBytes(format, timeMs)} + dataOffset);
}

}  // namespace tavimo::core
