#include "pages/page_layout.h"

#include <algorithm>

#include "pages/byte_kinds.h"

namespace tavimo::pages {

namespace {

// Advances and positions are kept in 16 bits; larger ones wrap.
constexpr std::int32_t LowWord(std::int32_t value) noexcept { return static_cast<std::int16_t>(value & 0xFFFF); }

void FindLines(PageText& text, const LineBreaker& breaker, std::int32_t linesPerPage, PageLayout& layout) noexcept {
  layout.lineCount = 0;
  std::int32_t start = 0;
  while (layout.lineCount < linesPerPage) {
    const LineBreak found = breaker.BreakForLayout(text.data() + start);
    if (!found.endsText && found.advance <= 0) return;
    layout.lines[static_cast<std::size_t>(layout.lineCount++)] = {start, found.kept};
    if (found.endsText) return;
    start += found.advance;
  }
}

// Takes the words of a line, which follow those of the lines before it.
void FindWords(const std::uint8_t* bytes, const std::int32_t* advances, std::int32_t left, LaidLine& line,
               LaidWord* words) noexcept {
  line.wordCount = 0;
  std::int32_t x = LowWord(left);
  for (std::int32_t at = 0; at < line.length; ++at) {
    const bool isInWord = IsWordByte(bytes[at]);
    if (isInWord && (at == 0 || !IsWordByte(bytes[at - 1]))) words[line.wordCount++] = {at, 0, x};
    if (isInWord) ++words[line.wordCount - 1].length;
    x = LowWord(x + advances[at]);
  }
}

}  // namespace

void LayOutPage(PageText& text, const PageHighlights& highlights, const PageSettings& settings,
                const platform::ByteAdvances& advances, PageLayout& layout) noexcept {
  FindLines(text, LineBreaker(advances, settings.pageWidth), settings.linesPerPage, layout);
  std::int32_t wordCount = 0;
  for (LaidLine& line : std::span(layout.lines).first(static_cast<std::size_t>(layout.lineCount))) {
    const std::uint8_t* bytes = text.data() + line.start;
    std::int32_t* lineAdvances = layout.advances.data() + line.start;
    std::transform(bytes, bytes + line.length, lineAdvances,
                   [&](std::uint8_t byte) { return LowWord(advances[byte]); });
    line.firstWord = wordCount;
    FindWords(bytes, lineAdvances, settings.left, line, layout.words.data() + wordCount);
    wordCount += line.wordCount;
  }
  for (std::int32_t i = 0; i < wordCount; ++i) layout.words[static_cast<std::size_t>(i)].state = highlights.StateOf(i);
}

}  // namespace tavimo::pages
