// The pictures behind the host kit's device contexts: a memory context with a section of pixels, and what is selected in
// it. The engine knows none of this: it draws into whatever context a host hands over.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/win32/system.h"

namespace tavimo::platform {

class HostPicture {
 public:
  static constexpr std::uint32_t kNoColour = 0xFFFFFFFF;

  // Null when the system has no room for it. May throw std::bad_alloc.
  static std::unique_ptr<HostPicture> Create(int width, int height);
  HostPicture(const HostPicture&) = delete;
  HostPicture& operator=(const HostPicture&) = delete;
  ~HostPicture();

  [[nodiscard]] HDC Dc() const noexcept { return dc_; }
  [[nodiscard]] int Width() const noexcept { return width_; }
  [[nodiscard]] int Height() const noexcept { return height_; }

  // The pixels, 0x00RRGGBB, rows from the top, with nothing of the system's still to be drawn.
  [[nodiscard]] std::uint32_t* Pixels() const noexcept;

  // Colours are 0x00BBGGRR. kNoColour outside the picture.
  [[nodiscard]] std::uint32_t Pixel(int x, int y) const noexcept;
  void Fill(int x, int y, int width, int height, std::uint32_t colour) noexcept;
  void SelectPen(std::uint32_t colour) noexcept;

  // False, and the font before stays, when no font of that family is installed that has Chinese characters.
  bool SelectFontOf(const wchar_t* family, int pixelHeight) noexcept;
  [[nodiscard]] bool HasFont() const noexcept { return font_ != nullptr; }

 private:
  HostPicture(int width, int height) noexcept;

  HDC dc_;
  HBITMAP bitmap_ = nullptr;
  std::uint32_t* pixels_ = nullptr;
  HPEN pen_ = nullptr;    // of ours; null: the system's black one
  HFONT font_ = nullptr;  // null until one is selected
  HGDIOBJ firstBitmap_ = nullptr;
  HGDIOBJ firstPen_ = nullptr;
  HGDIOBJ firstFont_ = nullptr;
  int width_;
  int height_;
};

// The families that SelectFontOf takes, in UTF-8, each with a line feed behind it, in alphabetical order. May throw
// std::bad_alloc.
[[nodiscard]] std::string ChineseFamilies();

// Null for a context that the kit did not make, or no longer has.
[[nodiscard]] HostPicture* FindPicture(HDC dc) noexcept;

}  // namespace tavimo::platform
