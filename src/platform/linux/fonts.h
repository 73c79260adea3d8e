// Fonts for memory pictures: found by family, measured glyph by glyph in whole pixels. Nothing of the font libraries is
// loaded before the first font is asked for.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/drawing.h"
#include "platform/linux/drawing_libraries.h"

namespace tavimo::platform {

// One character of a line. The platform takes the byte after a lead byte with it whatever it is, so that every text has
// cells; those without a character show the font's box.
struct Cell {
  char32_t character = 0;    // 0: none
  int byteCount = 1;         // 2 for a lead byte and what follows it
  unsigned long glyph = 0;   // known after Font::FindGlyphs
  std::int32_t advance = 0;  // pixels; the font's own after Font::Measure
};

// May throw std::bad_alloc.
[[nodiscard]] std::vector<Cell> SplitIntoCells(std::string_view gbk);

// The family names of the fonts that Font::Load takes, each with a line feed behind it. May throw std::bad_alloc.
[[nodiscard]] std::string ChineseFamilies();

class Font {
 public:
  static constexpr int kMaxPixelHeight = 1000;

  // Null when no font of that family is installed that has Chinese characters, or the font libraries are missing. The
  // search would else come back with any other font, and a page would be laid out in one that nobody chose. "sans-serif",
  // "serif" and "monospace" stand for whatever the system has.
  [[nodiscard]] static std::unique_ptr<Font> Load(const char* family, int pixelHeight);

  [[nodiscard]] int Ascent() const noexcept { return ascent_; }

  // Ascent and descent, without the gap between lines.
  [[nodiscard]] int TextHeight() const noexcept { return textHeight_; }

  // May throw std::bad_alloc.
  [[nodiscard]] TextSize Measure(std::string_view gbk) const;

  // Measured when first asked for: a page asks each time it is laid out.
  [[nodiscard]] const ByteAdvances& AdvancesOfBytes() const noexcept;

  void FindGlyphs(std::span<Cell> cells) const noexcept;

  [[nodiscard]] cairo_scaled_font_t* Scaled() const noexcept { return font_.get(); }

 private:
  void Measure(std::span<Cell> cells) const noexcept;

  struct Destroyer {
    void operator()(cairo_scaled_font_t* font) const noexcept { Drawing().cairo_scaled_font_destroy(font); }
  };
  using Handle = std::unique_ptr<cairo_scaled_font_t, Destroyer>;
  explicit Font(Handle font) noexcept;

  Handle font_;
  int ascent_ = 0;
  int textHeight_ = 0;
  mutable std::optional<ByteAdvances> advancesOfBytes_;

  struct KnownGlyph {
    char32_t character = 0;
    unsigned long glyph = 0;
  };
  mutable std::array<KnownGlyph, 4096> knownGlyphs_{};  // by the character's last 12 bits; a page has about a thousand
};

}  // namespace tavimo::platform
