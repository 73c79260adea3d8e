// Implements drawing.h over GDI.
#include "platform/drawing.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "platform/common/guarded.h"
#include "platform/text.h"
#include "platform/win32/system.h"
#include "platform/win32/wide_text.h"

namespace tavimo::platform {

namespace {

constexpr COLORREF kRed = RGB(0xFF, 0, 0);

// Text as the system draws it: one unit for each character, with the pixels that its bytes move what follows.
struct SpacedText {
  std::wstring units;
  std::vector<INT> advances;
};

// Control characters become blanks: a font may have a box for them.
SpacedText Spaced(std::string_view gbk, std::span<const std::int32_t> advances) {
  constexpr wchar_t kDelete = 0x7F;
  SpacedText text;
  gbk = gbk.substr(0, advances.size());
  text.units = ShownText(gbk);
  for (wchar_t& unit : text.units) {
    if (unit < L' ' || unit == kDelete) unit = L' ';
  }
  text.advances.reserve(text.units.size());
  for (std::size_t i = 0; i < gbk.size(); ++i) {
    INT advance = advances[i];
    if (IsLeadByte(gbk[i]) && i + 1 < gbk.size()) advance += advances[++i];
    text.advances.push_back(advance);
  }
  return text;
}

}  // namespace

void MoveTo(VcDc dc, std::int32_t x, std::int32_t y) noexcept { MoveToEx(dc, x, y, nullptr); }

void LineTo(VcDc dc, std::int32_t x, std::int32_t y) noexcept { ::LineTo(dc, x, y); }

RedPen::RedPen(VcDc dc) noexcept : dc_(dc) {
  HPEN red = CreatePen(PS_SOLID, 1, kRed);
  redPen_ = reinterpret_cast<std::uintptr_t>(red);
  if (red != nullptr) previousPen_ = reinterpret_cast<std::uintptr_t>(SelectObject(dc_, red));
}

// A pen can only be released once it is selected nowhere.
RedPen::~RedPen() {
  if (previousPen_ != 0) SelectObject(dc_, reinterpret_cast<HGDIOBJ>(previousPen_));
  if (redPen_ != 0) DeleteObject(reinterpret_cast<HGDIOBJ>(redPen_));
}

// Bytes of 0x80 and above are no characters by themselves; they get what the font shows for an unknown one.
bool MeasureBytes(VcDc dc, ByteAdvances& advances) noexcept {
  constexpr UINT kLastAscii = 0x7F;
  constexpr UINT kUnknown = 0xFFFD;
  INT ascii[kLastAscii + 1];
  INT unknown = 0;
  if (!GetCharWidth32W(dc, 0, kLastAscii, ascii) || !GetCharWidth32W(dc, kUnknown, kUnknown, &unknown)) return false;
  std::copy(std::begin(ascii), std::end(ascii), advances.begin());
  std::fill(advances.begin() + std::ssize(ascii), advances.end(), unknown);
  return true;
}

bool MeasureText(VcDc dc, std::string_view gbk, TextSize& size) noexcept {
  return Guarded(false, [&] {
    const std::wstring text = ShownText(gbk);
    SIZE extent{};
    if (!GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &extent)) return false;
    size = {extent.cx, gbk.empty() ? 0 : extent.cy};
    return true;
  });
}

void PaintText(VcDc dc, std::int32_t x, std::int32_t y, std::string_view gbk,
               std::span<const std::int32_t> advances) noexcept {
  // Short of memory, the text is left out.
  static_cast<void>(Guarded(false, [&] {
    const SpacedText text = Spaced(gbk, advances);
    return ExtTextOutW(dc, x, y, 0, nullptr, text.units.c_str(), static_cast<UINT>(text.units.size()),
                       text.advances.data()) != 0;
  }));
}

RedText::RedText(VcDc dc) noexcept : dc_(dc), previousColour_(SetTextColor(dc, kRed)) {}

RedText::~RedText() {
  if (previousColour_ != CLR_INVALID) SetTextColor(dc_, previousColour_);
}

}  // namespace tavimo::platform
