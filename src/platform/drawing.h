// Lines drawn into a host's device context.
//
// Callers guarantee: nothing; a null or destroyed context draws nothing.
// A back end checks: the context, and clips every line to it in time that does not grow with what lies outside.
#pragma once

#include <cstdint>

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

}  // namespace tavimo::platform
