// A real picture of the host kit that a test draws into and looks at pixel by pixel.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tavimo_host.h"

namespace tavimo::tests {

inline constexpr std::uint32_t kWhite = 0xFFFFFF;
inline constexpr std::uint32_t kBlack = 0x000000;
inline constexpr std::uint32_t kRed = 0x0000FF;

struct Picture {
  Picture(int pictureWidth, int pictureHeight)
      : dc(tvCreateDc(pictureWidth, pictureHeight)), width(pictureWidth), height(pictureHeight) {}
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;
  ~Picture() { tvDestroyDc(dc); }

  // One text line a row, from a place on: '.' white, '#' black, 'r' red, '?' anything else.
  [[nodiscard]] std::vector<std::string> Rows(int left = 0, int top = 0) const {
    std::vector<std::string> rows;
    for (int y = top; y < height; ++y) {
      std::string& row = rows.emplace_back();
      for (int x = left; x < width; ++x) row += Mark(tvPixel(dc, x, y));
    }
    return rows;
  }

  // Rows from the first to the last black pixel of a column; {-1, -1} when there is none.
  [[nodiscard]] std::pair<int, int> BlackRows(int x) const {
    std::pair<int, int> rows{-1, -1};
    for (int y = 0; y < height; ++y) {
      if (tvPixel(dc, x, y) != kBlack) continue;
      if (rows.first < 0) rows.first = y;
      rows.second = y;
    }
    return rows;
  }

  static char Mark(std::uint32_t colour) {
    return colour == kWhite ? '.' : colour == kBlack ? '#' : colour == kRed ? 'r' : '?';
  }

  VcDc dc;
  int width, height;
};

}  // namespace tavimo::tests
