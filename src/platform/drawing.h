// Lines and text drawn into a host's device context, and text measured in its font.
//
// Callers guarantee: nothing; a null or destroyed context draws nothing and measures nothing.
// A back end checks: the context, and clips to it in time that does not grow with what lies outside.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "tavimo.h"

namespace tavimo::platform {

// Sets the current position.
void MoveTo(VcDc dc, std::int32_t x, std::int32_t y) noexcept;

// Draws with the selected pen from the current position up to but not including (x, y), which becomes the position.
void LineTo(VcDc dc, std::int32_t x, std::int32_t y) noexcept;

inline void DrawLine(VcDc dc, std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) noexcept {
  MoveTo(dc, x1, y1);
  LineTo(dc, x2, y2);
}

// A solid red pen of one pixel, selected for the life of this object; the host's pen is selected again afterwards.
class RedPen {
 public:
  explicit RedPen(VcDc dc) noexcept;
  RedPen(const RedPen&) = delete;
  RedPen& operator=(const RedPen&) = delete;
  ~RedPen();

 private:
  VcDc dc_;
  std::uintptr_t previousPen_ = 0;  // the back end's own
  std::uintptr_t redPen_ = 0;
};

// The advance in pixels of each single byte in the selected font.
using ByteAdvances = std::array<std::int32_t, 256>;

// False, and nothing is changed, without a context or a font.
[[nodiscard]] bool MeasureBytes(VcDc dc, ByteAdvances& advances) noexcept;

struct TextSize {
  std::int32_t width = 0;   // pixels
  std::int32_t height = 0;  // pixels; 0 for an empty text
};

// The size of GBK text in the selected font; false, and nothing is changed, without a context or a font.
[[nodiscard]] bool MeasureText(VcDc dc, std::string_view gbk, TextSize& size) noexcept;

// Paints GBK text with the selected font and text colour, its upper left corner at (x, y). Byte i moves what follows it by
// advances[i] pixels, each byte of a character its own share; what the advances do not cover is not painted. Only the
// characters' own pixels change, the same ones each time, unless the host had its context fill the ground under them. A
// control character leaves its room empty.
void PaintText(VcDc dc, std::int32_t x, std::int32_t y, std::string_view gbk,
               std::span<const std::int32_t> advances) noexcept;

// Pure red text for the life of this object; the host's text colour is set again afterwards.
class RedText {
 public:
  explicit RedText(VcDc dc) noexcept;
  RedText(const RedText&) = delete;
  RedText& operator=(const RedText&) = delete;
  ~RedText();

 private:
  VcDc dc_;
  std::uint32_t previousColour_ = 0;
};

}  // namespace tavimo::platform
