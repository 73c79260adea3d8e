// Implements drawing.h over the host kit's device contexts.
#include "platform/drawing.h"

#include "platform/linux/memory_dc.h"

namespace tavimo::platform {

void MoveTo(VcDc dc, std::int32_t x, std::int32_t y) noexcept {
  if (MemoryDc* memoryDc = FindDc(dc)) memoryDc->MoveTo({x, y});
}

void LineTo(VcDc dc, std::int32_t x, std::int32_t y) noexcept {
  if (MemoryDc* memoryDc = FindDc(dc)) memoryDc->LineTo({x, y});
}

// A pen is its colour here: there is nothing to create or to release.
RedPen::RedPen(VcDc dc) noexcept : dc_(dc), redPen_(0x0000FF) {
  if (MemoryDc* memoryDc = FindDc(dc_)) previousPen_ = memoryDc->SelectPen(static_cast<std::uint32_t>(redPen_));
}

RedPen::~RedPen() {
  if (MemoryDc* memoryDc = FindDc(dc_)) memoryDc->SelectPen(static_cast<std::uint32_t>(previousPen_));
}

}  // namespace tavimo::platform
