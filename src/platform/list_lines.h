// Lines on their way to a list box.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace tavimo::platform {

// GBK, one line behind another, each with its zero byte; starts tells where each begins.
struct ListLines {
  const char* text;
  std::size_t byteCount;
  std::span<const std::uint32_t> starts;
};

}  // namespace tavimo::platform
