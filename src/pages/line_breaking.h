// Where a line of a script ends: the one rule behind pagination and page layout. It knows bytes and their advances, not
// pages, words or files.
#pragma once

#include <array>
#include <cstdint>

#include "pages/byte_kinds.h"
#include "platform/drawing.h"

namespace tavimo::pages {

struct LineBreak {
  std::int32_t kept = 0;     // bytes that the line keeps
  std::int32_t advance = 0;  // bytes to the start of the next line; 0 or less where the page is too narrow to go on
  bool endsText = false;     // there is no next line
};

// Text is addressed from the start of a line and ends with a zero byte.
class LineBreaker {
 public:
  LineBreaker(const platform::ByteAdvances& advances, std::int32_t pageWidth) noexcept;

  // The two differ at CR and LF, and in what becomes of a paragraph marker, "@@" at the start of the line: both measure it
  // as two blanks; pagination leaves the blanks in the text, layout puts the marker back.
  [[nodiscard]] LineBreak BreakForPagination(std::uint8_t* line) const noexcept;
  [[nodiscard]] LineBreak BreakForLayout(std::uint8_t* line) const noexcept;

 private:
  [[nodiscard]] std::int32_t FindBreakByte(const std::uint8_t* line) const noexcept;

  std::int64_t pageWidth_;
  std::array<std::int64_t, 256> advances_;  // so large at CR and zero that the line ends there
};

[[nodiscard]] constexpr bool StartsWithMarker(const std::uint8_t* line) noexcept {
  return line[0] == kMarkerByte && line[1] == kMarkerByte;
}

// The advance of each byte in a page's text: that of its own in ASCII, half of a Chinese character above. False without
// a context or a font.
[[nodiscard]] bool MeasurePageBytes(VcDc dc, platform::ByteAdvances& advances) noexcept;

}  // namespace tavimo::pages
