// A device context of the host kit: a picture in memory with a pen, a text colour, a position and a font. Colours are
// 0x00BBGGRR outside, and inside as the drawing library keeps them, 0x00RRGGBB.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "platform/common/handle_table.h"
#include "platform/linux/fonts.h"
#include "platform/linux/lines.h"
#include "tavimo.h"

namespace tavimo::platform {

class MemoryDc {
 public:
  static constexpr int kMaxSide = 32767;  // what the drawing library takes
  static constexpr std::uint32_t kNoColour = 0xFFFFFFFF;

  // REQUIRES: 1 <= width, height <= kMaxSide. May throw std::bad_alloc.
  MemoryDc(int width, int height);

  void MoveTo(Point point) noexcept { position_ = point; }
  void LineTo(Point point) noexcept;
  void Fill(int x, int y, int width, int height, std::uint32_t colour) noexcept;

  // kNoColour outside the picture.
  [[nodiscard]] std::uint32_t Pixel(int x, int y) const noexcept;

  // The pen that was selected before.
  std::uint32_t SelectPen(std::uint32_t colour) noexcept;

  // The colour that was set before.
  std::uint32_t SetTextColour(std::uint32_t colour) noexcept;

  // Null until one is selected.
  [[nodiscard]] const Font* SelectedFont() const noexcept { return font_.get(); }
  void SelectFont(std::unique_ptr<Font> font) noexcept { font_ = std::move(font); }

  // As platform::PaintText. May throw std::bad_alloc.
  void PaintText(Point corner, std::string_view gbk, std::span<const std::int32_t> advances);

  // Hands the bytes of a PNG file to write, which answers false to stop; false when it did or memory is short.
  using PngWriter = bool (*)(void* user, const unsigned char* bytes, unsigned int byteCount);
  [[nodiscard]] bool WritePng(PngWriter write, void* user) noexcept;

 private:
  [[nodiscard]] Picture Pixels() noexcept { return {pixels_.data(), width_, height_}; }
  // The pixels as the drawing library takes them; the caller destroys it.
  [[nodiscard]] cairo_surface_t* MakeSurface() noexcept;
  void PaintGlyphs(std::span<const cairo_glyph_t> glyphs) noexcept;

  int width_;
  int height_;
  std::vector<std::uint32_t> pixels_;
  Point position_;
  std::uint32_t pen_ = 0;
  std::uint32_t textColour_ = 0;
  std::unique_ptr<Font> font_;
};

// The process's device contexts; the user-interface thread alone uses them.
using DcTable = HandleTable<MemoryDc, HandleKind::DeviceContext>;
DcTable& Dcs() noexcept;

// Null for a context that does not exist.
[[nodiscard]] MemoryDc* FindDc(VcDc dc) noexcept;

}  // namespace tavimo::platform
