// The current page's text laid out into lines and words: what is drawn and what a click is tested against.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "pages/line_breaking.h"
#include "pages/page_highlights.h"
#include "pages/page_settings.h"
#include "pages/page_text.h"

namespace tavimo::pages {

struct LaidLine {
  std::int32_t start = 0;      // its first byte in the page's text
  std::int32_t length = 0;     // bytes
  std::int32_t firstWord = 0;  // its first word's place on the page, from 0
  std::int32_t wordCount = 0;
};

// A word that the line's end cuts is one on each line.
struct LaidWord {
  std::int32_t start = 0;   // its first byte in the line
  std::int32_t length = 0;  // bytes
  std::int32_t x = 0;       // pixel where its first byte stands
  std::uint8_t state = 0;   // highlight state
};

// The tables are as large as a page of the most bytes needs, whatever its lines are like: there is no limit for one line.
// Lines do not overlap, and a word takes a byte and, unless it is the line's last, one behind it.
struct PageLayout {
  static constexpr std::size_t kMaxWords = (kMaxPageBytes + kMaxLinesPerPage) / 2;

  std::int32_t lineCount = 0;
  std::array<LaidLine, kMaxLinesPerPage> lines{};
  std::array<LaidWord, kMaxWords> words{};             // of all lines, one behind another
  std::array<std::int32_t, kMaxPageBytes> advances{};  // pixels, by the byte's place in the page's text
};

// The text is as before afterwards. A page too narrow for a line to go on ends before that line.
void LayOutPage(PageText& text, const PageHighlights& highlights, const PageSettings& settings,
                const platform::ByteAdvances& advances, PageLayout& layout) noexcept;

}  // namespace tavimo::pages
