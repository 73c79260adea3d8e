// Arithmetic where the engine's 32-bit values may leave their range: held to it, or wrapped, never undefined.
#pragma once

#include <cstdint>
#include <limits>

namespace tavimo::core {

// Truncates toward zero and holds the result to 32 bits; 0 for what is no number.
constexpr std::int32_t TruncateToInt32(double value) noexcept {
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
  if (value >= static_cast<double>(kHighest)) return kHighest;
  if (value <= static_cast<double>(kLowest)) return kLowest;
  return value == value ? static_cast<std::int32_t>(value) : 0;
}

constexpr std::int32_t HoldToInt32(std::int64_t value) noexcept {
  if (value > std::numeric_limits<std::int32_t>::max()) return std::numeric_limits<std::int32_t>::max();
  if (value < std::numeric_limits<std::int32_t>::min()) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(value);
}

// The low 32 bits of the sum, difference or product.
constexpr std::int32_t WrappingAdd(std::int32_t left, std::int32_t right) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(left) + static_cast<std::uint32_t>(right));
}
constexpr std::int32_t WrappingSubtract(std::int32_t left, std::int32_t right) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(left) - static_cast<std::uint32_t>(right));
}
constexpr std::int32_t WrappingMultiply(std::int32_t left, std::int32_t right) noexcept {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(left) * static_cast<std::uint32_t>(right));
}

constexpr std::int32_t EvenTowardZero(std::int32_t value) noexcept { return value - value % 2; }

}  // namespace tavimo::core
