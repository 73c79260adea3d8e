#include "pages/page_drawing.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "core/arithmetic.h"

namespace tavimo::pages {

namespace {

// The bytes of a text from one on, with their advances.
void PaintBytes(VcDc dc, std::int32_t x, std::int32_t y, const std::uint8_t* bytes, const std::int32_t* advances,
                std::int32_t byteCount) noexcept {
  const auto count = static_cast<std::size_t>(byteCount);
  platform::PaintText(dc, x, y, {reinterpret_cast<const char*>(bytes), count}, {advances, count});
}

}  // namespace

void DrawTextLine(VcDc dc, PageText& text, const PageLayout& layout, const PageSettings& settings,
                  std::int32_t lineIndex) noexcept {
  const LaidLine& line = layout.lines[static_cast<std::size_t>(lineIndex)];
  std::uint8_t* bytes = text.data() + line.start;
  const std::int32_t* advances = layout.advances.data() + line.start;
  const std::int32_t y = core::HoldToInt32(settings.top + std::int64_t{lineIndex} * settings.lineHeight);
  if (line.length >= 2 && StartsWithMarker(bytes)) std::fill_n(bytes, 2, static_cast<std::uint8_t>(' '));
  PaintBytes(dc, settings.left, y, bytes, advances, line.length);

  const auto words = std::span(layout.words)
                         .subspan(static_cast<std::size_t>(line.firstWord), static_cast<std::size_t>(line.wordCount));
  if (std::none_of(words.begin(), words.end(), [](const LaidWord& word) { return word.state != 0; })) return;
  const platform::RedText red(dc);
  for (const LaidWord& word : words) {
    if (word.state != 0) PaintBytes(dc, word.x, y, bytes + word.start, advances + word.start, word.length);
  }
}

}  // namespace tavimo::pages
