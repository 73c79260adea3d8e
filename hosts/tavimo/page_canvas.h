// A page as a picture with its font, measured: what the engine is told before it breaks a script into pages, and where
// the host finds on the picture what the engine drew.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "page_setup.h"
#include "picture_parts.h"

namespace tavimo::host {

struct PageCanvas {
  Picture picture;
  int margin = 0;  // pixels on each side of the text
  int textWidth = 0;
  int textHeight = 0;
  int lineHeight = 0;
  int spacing = 0;
  std::array<std::int32_t, 256> advances{};  // of each byte of a text, as the engine counts them
};

// A Refusal that names the fonts there are when this one is not, and one for a page too small for a line of two
// characters.
[[nodiscard]] PageCanvas MakePageCanvas(const PageSetup& setup);

// Tells the engine to lay out pages in the canvas's margins, or in a rectangle of one line: its page file then says where
// every line begins.
enum class PageArea { Whole, OneLine };
void UsePageArea(const PageCanvas& canvas, PageArea area);

[[nodiscard]] std::string HashOf(const PageCanvas& canvas);

}  // namespace tavimo::host
