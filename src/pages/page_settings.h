// The rectangle and the line distance that scripts are laid out with.
#pragma once

#include <cstdint>

namespace tavimo::pages {

inline constexpr std::int32_t kMaxLinesPerPage = 60;

struct PageSettings {
  std::int32_t pageWidth = 0;     // pixels
  std::int32_t lineHeight = 0;    // pixels from one line to the next
  std::int32_t linesPerPage = 0;  // at most kMaxLinesPerPage, for pagination and layout alike: so they stay in step
  std::int32_t left = 0;          // pixel position of the first line's upper left corner
  std::int32_t top = 0;
};

// Pixels: the text's height for spacing 0 and any unknown one, 1.2 times that for 1, 1.5 times for 2, whole pixels only.
[[nodiscard]] std::int32_t LineHeight(std::int32_t textHeight, std::int32_t spacing) noexcept;

// How many whole lines the page's height holds. REQUIRES: lineHeight > 0.
[[nodiscard]] std::int32_t LinesPerPage(std::int32_t pageHeight, std::int32_t lineHeight) noexcept;

}  // namespace tavimo::pages
