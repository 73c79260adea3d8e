#include "pages/page_settings.h"

#include <algorithm>

#include "core/arithmetic.h"

namespace tavimo::pages {

std::int32_t LineHeight(std::int32_t textHeight, std::int32_t spacing) noexcept {
  // Tenths, so that 1.2 is exact.
  const std::int64_t tenths = spacing == 1 ? 12 : spacing == 2 ? 15 : 10;
  return core::HoldToInt32(textHeight * tenths / 10);
}

std::int32_t LinesPerPage(std::int32_t pageHeight, std::int32_t lineHeight) noexcept {
  return std::clamp(pageHeight / lineHeight, 0, kMaxLinesPerPage);
}

}  // namespace tavimo::pages
