// A short name for bytes: 16 hexadecimal digits (64-bit FNV-1a). Tells things apart by accident, not against malice.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tavimo::host {

inline std::string ContentHash(const void* bytes, std::size_t byteCount) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (std::size_t i = 0; i < byteCount; ++i) {
    hash = (hash ^ static_cast<const unsigned char*>(bytes)[i]) * 0x100000001B3;
  }
  std::string digits(16, '0');
  for (std::size_t i = digits.size(); i-- > 0; hash >>= 4) digits[i] = "0123456789abcdef"[hash & 15];
  return digits;
}

}  // namespace tavimo::host
