// The limit of drawing a page: the same characters as glyphs in their places, shown by the drawing library at one
// stroke.
#pragma once

#include <cairo/cairo.h>

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace tavimo::bench {

class GlyphPage {
 public:
  // Lays the page's text out as lines of a width. Of the font with which the engine draws.
  GlyphPage(const char* family, int pixelHeight, int width, int height);
  GlyphPage(const GlyphPage&) = delete;
  GlyphPage& operator=(const GlyphPage&) = delete;
  ~GlyphPage();

  // Puts the text's characters in place, lines of lineHeight pixels filled by the advances of bytes. Returns how many
  // lines.
  int Place(std::string_view gbk, std::span<const std::int32_t, 256> advances, int lineHeight);
  void Draw();

 private:
  cairo_surface_t* surface_;
  cairo_scaled_font_t* font_ = nullptr;
  int width_;
  std::vector<cairo_glyph_t> glyphs_;
};

}  // namespace tavimo::bench
