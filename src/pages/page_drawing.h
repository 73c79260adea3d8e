// Drawing the laid-out page into a host's device context, marked words in red over their black ones.
#pragma once

#include <cstdint>

#include "pages/page_layout.h"
#include "pages/page_settings.h"
#include "pages/page_text.h"
#include "platform/drawing.h"

namespace tavimo::pages {

// A paragraph marker at the start of a line becomes two blanks in the page's text. REQUIRES: the layout is that of the
// text, 0 <= lineIndex < lineCount.
void DrawTextLine(VcDc dc, PageText& text, const PageLayout& layout, const PageSettings& settings,
                  std::int32_t lineIndex) noexcept;

}  // namespace tavimo::pages
