// Walking a whole script once to find its pages.
#pragma once

#include <cstdint>

#include "pages/line_breaking.h"
#include "pages/page_file.h"
#include "pages/script_scrambling.h"
#include "platform/files.h"

namespace tavimo::pages {

struct PageSpan {
  std::size_t byteCount = 0;  // that the page takes
  bool endsText = false;      // it reached the zero byte
};

// One page. Paragraph markers of its lines are blanks in the text afterwards. REQUIRES: a zero byte ends the text.
[[nodiscard]] PageSpan MeasurePage(const LineBreaker& breaker, std::int32_t linesPerPage, std::uint8_t* text) noexcept;

// Writes the entries of all pages: up to the end of the script, to the first page that reaches a zero byte or has more
// than 4988 bytes, or before the first page that would take none because not one line fits it. False when reading fails or
// the script is longer than an entry can say.
[[nodiscard]] bool Paginate(platform::FileStream& script, Scrambling scrambling, const LineBreaker& breaker,
                            std::int32_t linesPerPage, PageFileWriter& pageFile) noexcept;

}  // namespace tavimo::pages
