// Numbers in files: little-endian, read and written byte by byte so that no alignment or byte order is assumed.
#pragma once

#include <cstdint>

namespace tavimo::core {

constexpr std::uint16_t ReadU16(const std::uint8_t* bytes) noexcept {
  return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

constexpr std::uint32_t ReadU32(const std::uint8_t* bytes) noexcept {
  return ReadU16(bytes) | static_cast<std::uint32_t>(ReadU16(bytes + 2)) << 16;
}

constexpr std::uint64_t ReadU64(const std::uint8_t* bytes) noexcept {
  return ReadU32(bytes) | static_cast<std::uint64_t>(ReadU32(bytes + 4)) << 32;
}

constexpr void WriteU16(std::uint8_t* bytes, std::uint16_t value) noexcept {
  bytes[0] = static_cast<std::uint8_t>(value);
  bytes[1] = static_cast<std::uint8_t>(value >> 8);
}

constexpr void WriteU32(std::uint8_t* bytes, std::uint32_t value) noexcept {
  WriteU16(bytes, static_cast<std::uint16_t>(value));
  WriteU16(bytes + 2, static_cast<std::uint16_t>(value >> 16));
}

constexpr void WriteU64(std::uint8_t* bytes, std::uint64_t value) noexcept {
  WriteU32(bytes, static_cast<std::uint32_t>(value));
  WriteU32(bytes + 4, static_cast<std::uint32_t>(value >> 32));
}

}  // namespace tavimo::core
