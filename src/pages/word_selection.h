// Which word a click selects, and the mark it leaves.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "pages/highlight_file.h"
#include "pages/page_layout.h"
#include "pages/page_settings.h"
#include "pages/page_text.h"

namespace tavimo::pages {

struct Selection {
  std::int32_t line = 0;
  std::int32_t word = 0;  // its place on the page
};

// A click over a letter or a hyphen, or to the right of the line's text, selects the last word of the line that begins at
// or left of it. None outside the lines, over any other byte, and left of the line's first word.
[[nodiscard]] std::optional<Selection> WordAt(const PageText& text, const PageLayout& layout,
                                              const PageSettings& settings, std::int32_t x, std::int32_t y) noexcept;

// Marks a plain word, unmarks another, and saves the states of the whole page. False, and everything is as before, when
// they cannot be saved.
[[nodiscard]] bool ToggleMark(std::int32_t word, PageLayout& layout, PageHighlights& highlights,
                              HighlightFile& file) noexcept;

[[nodiscard]] std::string_view WordText(const PageText& text, const PageLayout& layout,
                                        const Selection& selection) noexcept;

}  // namespace tavimo::pages
