// The host kit's device contexts: arguments checked, then the memory picture called. Files are host_kit_png.cpp.
#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <numeric>
#include <string_view>

#include "platform/linux/fonts.h"
#include "platform/linux/guarded.h"
#include "platform/linux/memory_dc.h"
#include "platform/text.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;

bool IsPictureSide(int pixels) noexcept { return pixels >= 1 && pixels <= platform::MemoryDc::kMaxSide; }

// Null when the context does not exist or has no font yet.
const platform::Font* FindFont(VcDc dc) noexcept {
  const platform::MemoryDc* memoryDc = platform::FindDc(dc);
  return memoryDc ? memoryDc->SelectedFont() : nullptr;
}

int TotalAdvance(const std::vector<platform::Cell>& cells) noexcept {
  const auto total = std::accumulate(cells.begin(), cells.end(), std::int64_t{0},
                                     [](std::int64_t sum, const platform::Cell& cell) { return sum + cell.advance; });
  return static_cast<int>(std::min<std::int64_t>(total, std::numeric_limits<int>::max()));
}

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
  const platform::Font* font = FindFont(dc);
  if (!font || !widths) return -1;
  std::array<platform::Cell, 256> cells{};
  for (std::size_t byte = 0; byte < cells.size(); ++byte) {
    cells[byte].character = platform::UnicodeFromGbk(static_cast<unsigned char>(byte), 0);
  }
  font->Measure(cells);
  std::transform(cells.begin(), cells.end(), widths, [](const platform::Cell& cell) { return cell.advance; });
  return 0;
}

int tvTextExtent(VcDc dc, const char* gbk, int count, int32_t* width, int32_t* height) VC_NOEXCEPT {
  const platform::Font* font = FindFont(dc);
  if (!font || !gbk || count < 0) return -1;
  return platform::Guarded(-1, [&] {
    auto cells = platform::SplitIntoCells(std::string_view(gbk, static_cast<std::size_t>(count)));
    font->Measure(cells);
    if (width) *width = TotalAdvance(cells);
    if (height) *height = cells.empty() ? 0 : font->TextHeight();
    return 0;
  });
}

}  // extern "C"
