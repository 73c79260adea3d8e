// Comparing byte strings the way file names are compared: ASCII letters without regard to case, every other byte by its
// unsigned value, so that GBK sorts behind ASCII.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace tavimo::core {

constexpr unsigned char FoldCase(char byte) noexcept {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 'A' && value <= 'Z' ? static_cast<unsigned char>(value + ('a' - 'A')) : value;
}

// Negative, 0 or positive.
constexpr int CompareIgnoringCase(std::string_view left, std::string_view right) noexcept {
  const std::size_t shared = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < shared; ++i) {
    if (const int difference = FoldCase(left[i]) - FoldCase(right[i]); difference != 0) return difference;
  }
  if (left.size() == right.size()) return 0;
  return left.size() < right.size() ? -1 : 1;
}

}  // namespace tavimo::core
