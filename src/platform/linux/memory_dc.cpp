// Implements memory_dc.h. Lines and rectangles are written straight into the pixels; Cairo paints glyphs and makes PNG
// files.
#include "platform/linux/memory_dc.h"

#include <algorithm>
#include <utility>

#include "platform/common/never_destroyed.h"
#include "platform/linux/drawing_libraries.h"

namespace tavimo::platform {

namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;

// Between 0x00BBGGRR and 0x00RRGGBB, either way.
std::uint32_t Swapped(std::uint32_t colour) noexcept {
  return (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
}

// Blanks, and control characters, for which a font may have a box.
bool LeavesNoMark(const Cell& cell) noexcept {
  constexpr char32_t kDelete = 0x7F;
  return cell.character == kDelete || (cell.character != 0 && cell.character <= U' ');
}

struct PngTarget {
  MemoryDc::PngWriter write;
  void* user;
};

cairo_status_t PassOn(void* target, const unsigned char* bytes, unsigned int byteCount) {
  const auto& png = *static_cast<const PngTarget*>(target);
  return png.write(png.user, bytes, byteCount) ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
}

}  // namespace

DcTable& Dcs() noexcept { return NeverDestroyed<DcTable>(); }

MemoryDc* FindDc(VcDc dc) noexcept { return Dcs().Find(reinterpret_cast<std::uintptr_t>(dc)); }

MemoryDc::MemoryDc(int width, int height)
    : width_(width),
      height_(height),
      pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), kWhite) {}

void MemoryDc::LineTo(Point point) noexcept {
  PaintLine(Pixels(), std::exchange(position_, point), point, Swapped(pen_));
}

void MemoryDc::Fill(int x, int y, int width, int height, std::uint32_t colour) noexcept {
  const auto left = std::clamp<std::int64_t>(x, 0, width_);
  const auto right = std::clamp<std::int64_t>(std::int64_t{x} + width, left, width_);
  const auto top = std::clamp<std::int64_t>(y, 0, height_);
  const auto bottom = std::clamp<std::int64_t>(std::int64_t{y} + height, top, height_);
  for (std::int64_t row = top; row < bottom; ++row) {
    std::fill_n(pixels_.begin() + row * width_ + left, right - left, Swapped(colour));
  }
}

std::uint32_t MemoryDc::Pixel(int x, int y) const noexcept {
  if (x < 0 || x >= width_ || y < 0 || y >= height_) return kNoColour;
  return Swapped(pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)]);
}

std::uint32_t MemoryDc::SelectPen(std::uint32_t colour) noexcept { return std::exchange(pen_, colour & kWhite); }

std::uint32_t MemoryDc::SetTextColour(std::uint32_t colour) noexcept {
  return std::exchange(textColour_, colour & kWhite);
}

cairo_surface_t* MemoryDc::MakeSurface() noexcept {
  constexpr int kBytesPerPixel = 4;
  return Drawing().cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels_.data()),
                                                       CAIRO_FORMAT_RGB24, width_, height_, width_ * kBytesPerPixel);
}

void MemoryDc::PaintText(Point corner, std::string_view gbk, std::span<const std::int32_t> advances) {
  // No glyph reaches farther than this from its origin: the drawing library's own coordinates are never left.
  constexpr std::int64_t kReach = 4 * Font::kMaxPixelHeight;
  const std::int64_t baseline = std::int64_t{corner.y} + (font_ ? font_->Ascent() : 0);
  if (!font_ || baseline < -kReach || baseline > height_ + kReach) return;
  std::vector<Cell> cells = SplitIntoCells(gbk.substr(0, advances.size()));
  font_->FindGlyphs(cells);
  std::vector<cairo_glyph_t> glyphs;
  glyphs.reserve(cells.size());
  std::int64_t x = corner.x;
  std::size_t byte = 0;
  for (const Cell& cell : cells) {
    if (x >= -kReach && x <= width_ + kReach && !LeavesNoMark(cell)) {
      glyphs.push_back({cell.glyph, static_cast<double>(x), static_cast<double>(baseline)});
    }
    for (int i = 0; i < cell.byteCount; ++i) x += advances[byte++];
  }
  PaintGlyphs(glyphs);
}

void MemoryDc::PaintGlyphs(std::span<const cairo_glyph_t> glyphs) noexcept {
  constexpr double kFullShade = 255;
  cairo_surface_t* surface = MakeSurface();
  cairo_t* painter = Drawing().cairo_create(surface);
  Drawing().cairo_set_source_rgb(painter, (textColour_ & 0xFF) / kFullShade, (textColour_ >> 8 & 0xFF) / kFullShade,
                                 (textColour_ >> 16) / kFullShade);
  Drawing().cairo_set_scaled_font(painter, font_->Scaled());
  Drawing().cairo_show_glyphs(painter, glyphs.data(), static_cast<int>(glyphs.size()));
  Drawing().cairo_destroy(painter);
  Drawing().cairo_surface_destroy(surface);
}

bool MemoryDc::WritePng(PngWriter write, void* user) noexcept {
  if (LoadedDrawing() == nullptr) return false;
  cairo_surface_t* surface = MakeSurface();
  PngTarget target{write, user};
  const cairo_status_t status = Drawing().cairo_surface_write_to_png_stream(surface, &PassOn, &target);
  Drawing().cairo_surface_destroy(surface);
  return status == CAIRO_STATUS_SUCCESS;
}

}  // namespace tavimo::platform
