// Implements host_pictures.h over GDI.
#include "platform/win32/host_pictures.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <new>
#include <set>

#include "platform/win32/wide_text.h"

namespace tavimo::platform {

namespace {

constexpr std::uint32_t kWhite = 0xFFFFFF;

std::uint32_t Swapped(std::uint32_t colour) noexcept {
  return (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
}

// Families that stand for whatever the system has.
bool IsGenericFamily(const wchar_t* family) {
  constexpr std::array<const wchar_t*, 3> kGenericFamilies{L"sans-serif", L"serif", L"monospace"};
  return std::any_of(kGenericFamilies.begin(), kGenericFamilies.end(),
                     [&](const wchar_t* generic) { return lstrcmpiW(generic, family) == 0; });
}

using Families = std::set<std::wstring>;

// The names with "@" are the same fonts turned for lines from top to bottom.
int CALLBACK NoteFamily(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM families) noexcept try {
  if (font->lfFaceName[0] != L'@') reinterpret_cast<Families*>(families)->insert(font->lfFaceName);
  return 1;
} catch (const std::bad_alloc&) {
  return 0;  // through the system's frames no exception can pass
}

int CALLBACK NoteFont(const LOGFONTW*, const TEXTMETRICW*, DWORD, LPARAM isFound) {
  *reinterpret_cast<bool*>(isFound) = true;
  return 0;
}

// The system takes the next best font where there is none of a name, and a page would be laid out in one nobody chose.
// A name may be given in another language than the one the system answers in: then its own list of fonts decides.
bool IsInstalled(HDC dc, const wchar_t* family) {
  LOGFONTW wanted{};
  wanted.lfCharSet = GB2312_CHARSET;  // those that have Chinese characters
  std::wcsncpy(wanted.lfFaceName, family, LF_FACESIZE - 1);
  bool isFound = false;
  EnumFontFamiliesExW(dc, &wanted, &NoteFont, reinterpret_cast<LPARAM>(&isFound), 0);
  return isFound;
}

bool HasChinese(HDC dc) {
  constexpr wchar_t kProbe[] = L"\x9AD8";
  WORD glyph = 0xFFFF;
  return GetGlyphIndicesW(dc, kProbe, 1, &glyph, GGI_MARK_NONEXISTING_GLYPHS) == 1 && glyph != 0xFFFF;
}

// Without smoothing, so that a word drawn again in red covers the black one to the last pixel.
HFONT MakeFont(const wchar_t* family, int pixelHeight) {
  return CreateFontW(-pixelHeight, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, GB2312_CHARSET, OUT_DEFAULT_PRECIS,
                     CLIP_DEFAULT_PRECIS, NONANTIALIASED_QUALITY, DEFAULT_PITCH | FF_DONTCARE, family);
}

}  // namespace

HostPicture::HostPicture(int width, int height) noexcept
    : dc_(CreateCompatibleDC(nullptr)), width_(width), height_(height) {
  BITMAPINFO format{};
  format.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* pixels = nullptr;
  bitmap_ = CreateDIBSection(dc_, &format, DIB_RGB_COLORS, &pixels, nullptr, 0);
  pixels_ = static_cast<std::uint32_t*>(pixels);
  if (bitmap_ == nullptr) return;
  firstBitmap_ = SelectObject(dc_, bitmap_);
  firstPen_ = GetCurrentObject(dc_, OBJ_PEN);
  firstFont_ = GetCurrentObject(dc_, OBJ_FONT);
  SetBkMode(dc_, TRANSPARENT);
  std::fill_n(pixels_, static_cast<std::size_t>(width) * static_cast<std::size_t>(height), kWhite);
}

std::unique_ptr<HostPicture> HostPicture::Create(int width, int height) {
  std::unique_ptr<HostPicture> picture(new HostPicture(width, height));
  return picture->bitmap_ == nullptr ? nullptr : std::move(picture);
}

HostPicture::~HostPicture() {
  if (firstPen_ != nullptr) SelectObject(dc_, firstPen_);
  if (firstFont_ != nullptr) SelectObject(dc_, firstFont_);
  if (firstBitmap_ != nullptr) SelectObject(dc_, firstBitmap_);
  for (HGDIOBJ object : std::array<HGDIOBJ, 3>{pen_, font_, bitmap_}) {
    if (object != nullptr) DeleteObject(object);
  }
  DeleteDC(dc_);
}

std::uint32_t* HostPicture::Pixels() const noexcept {
  GdiFlush();
  return pixels_;
}

std::uint32_t HostPicture::Pixel(int x, int y) const noexcept {
  if (x < 0 || x >= width_ || y < 0 || y >= height_) return kNoColour;
  const std::size_t row = static_cast<std::size_t>(y) * static_cast<std::size_t>(width_);
  return Swapped(Pixels()[row + static_cast<std::size_t>(x)] & kWhite);
}

void HostPicture::Fill(int x, int y, int width, int height, std::uint32_t colour) noexcept {
  const auto left = std::clamp<std::int64_t>(x, 0, width_);
  const auto right = std::clamp<std::int64_t>(std::int64_t{x} + width, left, width_);
  const auto top = std::clamp<std::int64_t>(y, 0, height_);
  const auto bottom = std::clamp<std::int64_t>(std::int64_t{y} + height, top, height_);
  std::uint32_t* pixels = Pixels();
  for (std::int64_t row = top; row < bottom; ++row) {
    std::fill_n(pixels + row * width_ + left, right - left, Swapped(colour & kWhite));
  }
}

void HostPicture::SelectPen(std::uint32_t colour) noexcept {
  HPEN pen = CreatePen(PS_SOLID, 1, colour & kWhite);
  if (pen == nullptr) return;
  SelectObject(dc_, pen);
  if (pen_ != nullptr) DeleteObject(pen_);
  pen_ = pen;
}

bool HostPicture::SelectFontOf(const wchar_t* family, int pixelHeight) noexcept {
  const bool isGeneric = IsGenericFamily(family);
  if (!isGeneric && (std::wcslen(family) >= LF_FACESIZE || !IsInstalled(dc_, family))) return false;
  HFONT font = MakeFont(isGeneric ? L"" : family, pixelHeight);
  if (font == nullptr) return false;
  HGDIOBJ previous = SelectObject(dc_, font);
  if (!HasChinese(dc_)) {
    SelectObject(dc_, previous);
    DeleteObject(font);
    return false;
  }
  if (font_ != nullptr) DeleteObject(font_);
  font_ = font;
  return true;
}

std::string ChineseFamilies() {
  const std::unique_ptr<HostPicture> picture = HostPicture::Create(1, 1);
  if (!picture) return {};
  LOGFONTW anyFamily{};
  anyFamily.lfCharSet = GB2312_CHARSET;
  Families families;
  EnumFontFamiliesExW(picture->Dc(), &anyFamily, &NoteFamily, reinterpret_cast<LPARAM>(&families), 0);
  std::string lines;
  for (const std::wstring& family : families) {
    if (picture->SelectFontOf(family.c_str(), 16)) lines += Utf8FromWide(family).value_or("") + "\n";
  }
  return lines;
}

}  // namespace tavimo::platform
