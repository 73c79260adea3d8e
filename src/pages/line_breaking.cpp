#include "pages/line_breaking.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "platform/gbk_literal.h"

namespace tavimo::pages {

namespace {

using namespace platform::literals;

constexpr std::int64_t kEndsLine = std::int64_t{1} << 62;

using BreakKinds = std::array<BreakKind, 256>;

constexpr BreakKinds KindsOfAllBytes() noexcept {
  BreakKinds kinds{};
  for (std::size_t byte = 0; byte < kinds.size(); ++byte) kinds[byte] = BreakKindOf(static_cast<std::uint8_t>(byte));
  return kinds;
}

constexpr BreakKinds kBreakKinds = KindsOfAllBytes();

// The length of the unbroken run of double-byte bytes that ends at an index, back to the line's start. The rule:
//   while (length <= index && IsDoubleByte(line[index - length])) ++length;
// Eight bytes are looked at together where there are as many, because a line of Chinese is one run.
std::int32_t RunEndingAt(const std::uint8_t* line, std::int32_t index) noexcept {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  constexpr std::int32_t kTogether = sizeof kHighBits;
  std::int32_t length = 0;
  for (std::uint64_t bytes = 0; length + kTogether <= index + 1; length += kTogether) {
    std::memcpy(&bytes, line + index + 1 - length - kTogether, kTogether);
    if ((bytes & kHighBits) != kHighBits) break;
  }
  while (length <= index && IsDoubleByte(line[index - length])) ++length;
  return length;
}

// The bytes up to and with the last space before an index; 0 when there is none.
std::int32_t ThroughLastSpace(const std::uint8_t* line, std::int32_t index) noexcept {
  while (index > 0 && line[index - 1] != ' ') --index;
  return index;
}

// By the byte at the break; the end of the text and CR are the callers'.
LineBreak BreakAt(const std::uint8_t* line, std::int32_t index) noexcept {
  switch (kBreakKinds[line[index]]) {
    case BreakKind::WordPart: {
      const std::int32_t throughSpace = ThroughLastSpace(line, index);
      return throughSpace > 0 ? LineBreak{throughSpace, throughSpace} : LineBreak{index, index};
    }
    case BreakKind::Blank:
      return {index + 1, index + 1};
    case BreakKind::Quote:  // not to be parted from what it follows, which is a byte here and may be half a character
      return {index - 1, index - 1};
    default:
      return {index, index};
  }
}

constexpr bool IsLineEndByte(std::uint8_t byte) noexcept { return byte == kCarriageReturn || byte == kLineFeed; }

void PutMarker(std::uint8_t* line, std::uint8_t byte) noexcept { line[0] = line[1] = byte; }

}  // namespace

LineBreaker::LineBreaker(const platform::ByteAdvances& advances, std::int32_t pageWidth) noexcept
    : pageWidth_(pageWidth) {
  std::copy(advances.begin(), advances.end(), advances_.begin());
  advances_[0] = kEndsLine;
  advances_[kCarriageReturn] = kEndsLine;
}

// The first byte with which the advances reach the page's width, a CR or the end of the text; for the second byte of a
// character the first one, counted from the first of their run.
std::int32_t LineBreaker::FindBreakByte(const std::uint8_t* line) const noexcept {
  std::int64_t width = 0;
  std::int32_t index = 0;
  while ((width += advances_[line[index]]) < pageWidth_) ++index;
  if (!IsDoubleByte(line[index])) return index;
  return RunEndingAt(line, index) % 2 == 0 ? index - 1 : index;
}

LineBreak LineBreaker::BreakForPagination(std::uint8_t* line) const noexcept {
  if (StartsWithMarker(line)) PutMarker(line, ' ');
  const std::int32_t index = FindBreakByte(line);
  if (line[index] == 0) return {index, 0, true};
  if (!IsLineEndByte(line[index])) return BreakAt(line, index);
  return {index, index + (IsLineEndByte(line[index + 1]) ? 2 : 1)};
}

LineBreak LineBreaker::BreakForLayout(std::uint8_t* line) const noexcept {
  const bool isMarked = StartsWithMarker(line);
  if (isMarked) PutMarker(line, ' ');
  const std::int32_t index = FindBreakByte(line);
  LineBreak found{index, 0, true};
  if (line[index] == kCarriageReturn) {
    found = {index, index + (line[index + 1] == 0 ? 1 : 2)};
  } else if (line[index] != 0) {
    found = BreakAt(line, index);
  }
  if (isMarked) PutMarker(line, kMarkerByte);
  return found;
}

bool MeasurePageBytes(VcDc dc, platform::ByteAdvances& advances) noexcept {
  constexpr std::size_t kFirstDoubleByte = 0x80;
  platform::TextSize character;
  if (!platform::MeasureBytes(dc, advances) || !platform::MeasureText(dc, u8"高"_gbk, character)) return false;
  std::fill(advances.begin() + kFirstDoubleByte, advances.end(), character.width / 2);
  return true;
}

}  // namespace tavimo::pages
