// The host kit's device contexts: arguments checked, then the memory picture called. Files are host_kit_png.cpp.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "platform/common/guarded.h"
#include "platform/drawing.h"
#include "platform/linux/fonts.h"
#include "platform/linux/memory_dc.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;

bool IsPictureSide(int pixels) noexcept { return pixels >= 1 && pixels <= platform::MemoryDc::kMaxSide; }

}  // namespace

extern "C" {

VcDc tvCreateDc(int width, int height) VC_NOEXCEPT {
  if (!IsPictureSide(width) || !IsPictureSide(height)) return nullptr;
  return platform::Guarded<VcDc>(nullptr, [&] {
    return reinterpret_cast<VcDc>(platform::Dcs().Add(std::make_unique<platform::MemoryDc>(width, height)));
  });
}

void tvDestroyDc(VcDc dc) VC_NOEXCEPT { platform::Dcs().Remove(reinterpret_cast<std::uintptr_t>(dc)); }

int tvSelectFont(VcDc dc, const char* family_utf8, int pixel_height) VC_NOEXCEPT {
  platform::MemoryDc* memoryDc = platform::FindDc(dc);
  if (!memoryDc || !family_utf8 || pixel_height < 1 || pixel_height > platform::Font::kMaxPixelHeight) return -1;
  return platform::Guarded(-1, [&] {
    std::unique_ptr<platform::Font> font = platform::Font::Load(family_utf8, pixel_height);
    if (!font) return -1;
    memoryDc->SelectFont(std::move(font));
    return 0;
  });
}

int tvListFonts(char* names_utf8, int size) VC_NOEXCEPT {
  if (!names_utf8 || size < 1) return -1;
  names_utf8[0] = 0;
  return platform::Guarded(-1, [&] {
    const std::string lines = platform::ChineseFamilies();
    if (lines.size() >= static_cast<std::size_t>(size)) return -1;
    std::memcpy(names_utf8, lines.c_str(), lines.size() + 1);
    return static_cast<int>(lines.size()) + 1;
  });
}

void tvSelectPen(VcDc dc, uint32_t colour) VC_NOEXCEPT {
  if (platform::MemoryDc* memoryDc = platform::FindDc(dc)) memoryDc->SelectPen(colour);
}

void tvSetTextColour(VcDc dc, uint32_t colour) VC_NOEXCEPT {
  if (platform::MemoryDc* memoryDc = platform::FindDc(dc)) memoryDc->SetTextColour(colour);
}

void tvFill(VcDc dc, int x, int y, int width, int height, uint32_t colour) VC_NOEXCEPT {
  if (platform::MemoryDc* memoryDc = platform::FindDc(dc)) memoryDc->Fill(x, y, width, height, colour);
}

uint32_t tvPixel(VcDc dc, int x, int y) VC_NOEXCEPT {
  const platform::MemoryDc* memoryDc = platform::FindDc(dc);
  return memoryDc ? memoryDc->Pixel(x, y) : platform::MemoryDc::kNoColour;
}

int tvCharWidths(VcDc dc, int32_t widths[256]) VC_NOEXCEPT {
  platform::ByteAdvances advances;
  if (!widths || !platform::MeasureBytes(dc, advances)) return -1;
  std::copy(advances.begin(), advances.end(), widths);
  return 0;
}

int tvTextExtent(VcDc dc, const char* gbk, int count, int32_t* width, int32_t* height) VC_NOEXCEPT {
  platform::TextSize size;
  if (!gbk || count < 0 || !platform::MeasureText(dc, {gbk, static_cast<std::size_t>(count)}, size)) return -1;
  if (width) *width = size.width;
  if (height) *height = size.height;
  return 0;
}

}  // extern "C"
