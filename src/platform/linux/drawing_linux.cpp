// Implements drawing.h over the host kit's device contexts.
#include "platform/drawing.h"

#include "platform/common/guarded.h"
#include "platform/linux/memory_dc.h"

namespace tavimo::platform {

namespace {

constexpr std::uint32_t kRed = 0x0000FF;

// Null when the context does not exist or has no font yet.
const Font* FindFont(VcDc dc) noexcept {
  const MemoryDc* memoryDc = FindDc(dc);
  return memoryDc ? memoryDc->SelectedFont() : nullptr;
}

}  // namespace

void MoveTo(VcDc dc, std::int32_t x, std::int32_t y) noexcept {
  if (MemoryDc* memoryDc = FindDc(dc)) memoryDc->MoveTo({x, y});
}

void LineTo(VcDc dc, std::int32_t x, std::int32_t y) noexcept {
  if (MemoryDc* memoryDc = FindDc(dc)) memoryDc->LineTo({x, y});
}

// A pen is its colour here: there is nothing to create or to release.
RedPen::RedPen(VcDc dc) noexcept : dc_(dc), redPen_(kRed) {
  if (MemoryDc* memoryDc = FindDc(dc_)) previousPen_ = memoryDc->SelectPen(static_cast<std::uint32_t>(redPen_));
}

RedPen::~RedPen() {
  if (MemoryDc* memoryDc = FindDc(dc_)) memoryDc->SelectPen(static_cast<std::uint32_t>(previousPen_));
}

bool MeasureBytes(VcDc dc, ByteAdvances& advances) noexcept {
  const Font* font = FindFont(dc);
  if (font != nullptr) advances = font->AdvancesOfBytes();
  return font != nullptr;
}

bool MeasureText(VcDc dc, std::string_view gbk, TextSize& size) noexcept {
  const Font* font = FindFont(dc);
  return font != nullptr && Guarded(false, [&] {
           size = font->Measure(gbk);
           return true;
         });
}

void PaintText(VcDc dc, std::int32_t x, std::int32_t y, std::string_view gbk,
               std::span<const std::int32_t> advances) noexcept {
  MemoryDc* memoryDc = FindDc(dc);
  if (memoryDc == nullptr) return;
  // Short of memory, the text is left out.
  static_cast<void>(Guarded(false, [&] {
    memoryDc->PaintText({x, y}, gbk, advances);
    return true;
  }));
}

RedText::RedText(VcDc dc) noexcept : dc_(dc) {
  if (MemoryDc* memoryDc = FindDc(dc_)) previousColour_ = memoryDc->SetTextColour(kRed);
}

RedText::~RedText() {
  if (MemoryDc* memoryDc = FindDc(dc_)) memoryDc->SetTextColour(previousColour_);
}

}  // namespace tavimo::platform
