// The host kit's device contexts: arguments checked, then the picture called. Files are host_kit_png.cpp.
#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/common/guarded.h"
#include "platform/drawing.h"
#include "platform/win32/host_pictures.h"
#include "platform/win32/wide_text.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;
using platform::HostPicture;

constexpr int kMaxSide = 32767;
constexpr int kMaxPixelHeight = 1000;

std::vector<std::unique_ptr<HostPicture>>& Pictures() {
  static std::vector<std::unique_ptr<HostPicture>> pictures;
  return pictures;
}

bool IsPictureSide(int pixels) noexcept { return pixels >= 1 && pixels <= kMaxSide; }

bool HasFont(VcDc dc) noexcept {
  const HostPicture* picture = platform::FindPicture(dc);
  return picture != nullptr && picture->HasFont();
}

}  // namespace

tavimo::platform::HostPicture* tavimo::platform::FindPicture(HDC dc) noexcept {
  const auto found =
      std::find_if(Pictures().begin(), Pictures().end(), [dc](const auto& picture) { return picture->Dc() == dc; });
  return found == Pictures().end() ? nullptr : found->get();
}

extern "C" {

VcDc tvCreateDc(int width, int height) VC_NOEXCEPT {
  if (!IsPictureSide(width) || !IsPictureSide(height)) return nullptr;
  return platform::Guarded<VcDc>(nullptr, [&]() -> VcDc {
    std::unique_ptr<HostPicture> picture = HostPicture::Create(width, height);
    if (!picture) return nullptr;
    Pictures().push_back(std::move(picture));
    return Pictures().back()->Dc();
  });
}

void tvDestroyDc(VcDc dc) VC_NOEXCEPT {
  std::erase_if(Pictures(), [dc](const auto& picture) { return picture->Dc() == dc; });
}

int tvSelectFont(VcDc dc, const char* family_utf8, int pixel_height) VC_NOEXCEPT {
  HostPicture* picture = platform::FindPicture(dc);
  if (!picture || !family_utf8 || pixel_height < 1 || pixel_height > kMaxPixelHeight) return -1;
  return platform::Guarded(-1, [&] {
    const std::optional<std::wstring> family = platform::WideFromUtf8(family_utf8);
    return family && !family->empty() && picture->SelectFontOf(family->c_str(), pixel_height) ? 0 : -1;
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
  if (HostPicture* picture = platform::FindPicture(dc)) picture->SelectPen(colour);
}

void tvSetTextColour(VcDc dc, uint32_t colour) VC_NOEXCEPT { SetTextColor(dc, colour & 0xFFFFFF); }

void tvFill(VcDc dc, int x, int y, int width, int height, uint32_t colour) VC_NOEXCEPT {
  if (HostPicture* picture = platform::FindPicture(dc)) picture->Fill(x, y, width, height, colour);
}

uint32_t tvPixel(VcDc dc, int x, int y) VC_NOEXCEPT {
  const HostPicture* picture = platform::FindPicture(dc);
  return picture ? picture->Pixel(x, y) : HostPicture::kNoColour;
}

int tvCharWidths(VcDc dc, int32_t widths[256]) VC_NOEXCEPT {
  platform::ByteAdvances advances;
  if (!widths || !HasFont(dc) || !platform::MeasureBytes(dc, advances)) return -1;
  std::copy(advances.begin(), advances.end(), widths);
  return 0;
}

int tvTextExtent(VcDc dc, const char* gbk, int count, int32_t* width, int32_t* height) VC_NOEXCEPT {
  platform::TextSize size;
  if (!gbk || count < 0 || !HasFont(dc)) return -1;
  if (!platform::MeasureText(dc, {gbk, static_cast<std::size_t>(count)}, size)) return -1;
  if (width) *width = size.width;
  if (height) *height = size.height;
  return 0;
}

}  // extern "C"
