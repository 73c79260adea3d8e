// One thing: the pixels of a one-pixel line, by the platform's rule. The first pixel is painted, the last is not; where
// the exact line passes between two pixels, the nearer one is painted, and of two equally near ones the one with the
// smaller coordinate, whichever way the line is drawn.
#pragma once

#include <cstdint>

namespace tavimo::platform {

struct Point {
  std::int32_t x = 0;
  std::int32_t y = 0;
};

struct Picture {
  std::uint32_t* pixels;  // rows from the top without gaps
  std::int32_t width;
  std::int32_t height;
};

// Takes time for the pixels inside the picture alone, whatever the line's length.
void PaintLine(const Picture& picture, Point from, Point to, std::uint32_t value) noexcept;

}  // namespace tavimo::platform
