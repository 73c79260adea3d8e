// Fonts for memory pictures: found by family, measured glyph by glyph in whole pixels. Nothing of the font libraries is
// started before the first font is asked for.
#pragma once

#include <cairo/cairo.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace tavimo::platform {

// One character of a line. The platform takes the byte after a lead byte with it whatever it is, so that every text has
// cells; those without a character show the font's box.
struct Cell {
  char32_t character = 0;    // 0: none
  int byteCount = 1;         // 2 for a lead byte and what follows it
  unsigned long glyph = 0;   // known after Font::Measure
  std::int32_t advance = 0;  // pixels; known after Font::Measure
};

// May throw std::bad_alloc.
[[nodiscard]] std::vector<Cell> SplitIntoCells(std::string_view gbk);

class Font {
 public:
  static constexpr int kMaxPixelHeight = 1000;

  // Null when no font of that family is installed that has Chinese characters. The search would else come back with any
  // other font, and a page would be laid out in one that nobody chose. "sans-serif", "serif" and "monospace" stand for
  // whatever the system has.
  [[nodiscard]] static std::unique_ptr<Font> Load(const char* family, int pixelHeight);

  // Ascent and descent, without the gap between lines.
  [[nodiscard]] int TextHeight() const noexcept { return textHeight_; }

  void Measure(std::span<Cell> cells) const noexcept;

 private:
  struct Destroyer {
    void operator()(cairo_scaled_font_t* font) const noexcept { cairo_scaled_font_destroy(font); }
  };
  using Handle = std::unique_ptr<cairo_scaled_font_t, Destroyer>;
  explicit Font(Handle font) noexcept;

  Handle font_;
  int textHeight_ = 0;
};

}  // namespace tavimo::platform
