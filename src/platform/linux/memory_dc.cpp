// Implements memory_dc.h. Lines and rectangles are written straight into the pixels; Cairo sees them only to make a PNG.
#include "platform/linux/memory_dc.h"

#include <cairo/cairo.h>

#include <algorithm>
#include <utility>

#include "platform/linux/never_destroyed.h"

namespace tavimo::platform {

namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;

// Between 0x00BBGGRR and 0x00RRGGBB, either way.
std::uint32_t Swapped(std::uint32_t colour) noexcept {
  return (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
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

bool MemoryDc::WritePng(PngWriter write, void* user) noexcept {
  constexpr int kBytesPerPixel = 4;
  cairo_surface_t* surface = cairo_image_surface_create_for_data(
      reinterpret_cast<unsigned char*>(pixels_.data()), CAIRO_FORMAT_RGB24, width_, height_, width_ * kBytesPerPixel);
  PngTarget target{write, user};
  const cairo_status_t status = cairo_surface_write_to_png_stream(surface, &PassOn, &target);
  cairo_surface_destroy(surface);
  return status == CAIRO_STATUS_SUCCESS;
}

}  // namespace tavimo::platform
