#include "hostutil/gbk_char_count.h"

#include <algorithm>

namespace tavimo::hostutil {

std::int32_t GbkCharCount(std::string_view text) noexcept {
  const auto byteCount = static_cast<std::int32_t>(text.size());
  const auto highBytes = static_cast<std::int32_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; }));
  return byteCount - highBytes / 2 + highBytes % 2;
}

std::int32_t FindLastSlash(std::string_view path) noexcept {
  const std::size_t slash = path.rfind('\\');
  if (slash == std::string_view::npos || slash == 0) return -1;
  return GbkCharCount(path.substr(0, slash + 1));
}

}  // namespace tavimo::hostutil
