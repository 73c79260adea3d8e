#include "pages/pagination.h"

#include <algorithm>
#include <limits>

#include "pages/byte_kinds.h"
#include "pages/page_text.h"
#include "pages/script_window.h"
#include "pages/word_count.h"

namespace tavimo::pages {

namespace {

// The next page of at most kMaxPageBytes, measured with a zero byte behind them.
PageSpan MeasureNextPage(const LineBreaker& breaker, std::int32_t linesPerPage,
                         std::span<std::uint8_t> ahead) noexcept {
  const std::size_t chunkBytes = std::min(ahead.size(), kMaxPageBytes);
  std::uint8_t& behind = *(ahead.data() + chunkBytes);
  const std::uint8_t hidden = behind;
  behind = 0;
  const PageSpan page = MeasurePage(breaker, linesPerPage, ahead.data());
  behind = hidden;
  return page;
}

}  // namespace

PageSpan MeasurePage(const LineBreaker& breaker, std::int32_t linesPerPage, std::uint8_t* text) noexcept {
  std::uint8_t* line = text;
  const std::uint8_t* cutMarker = nullptr;
  for (std::int32_t i = 0; i < linesPerPage; ++i) {
    const bool isMarked = StartsWithMarker(line);
    const LineBreak found = breaker.BreakForPagination(line);
    if (found.endsText) return {static_cast<std::size_t>(line - text + found.kept), true};
    if (found.advance <= 0) break;
    cutMarker = isMarked && found.advance == 1 ? line : nullptr;
    line += found.advance;
  }
  // The next page reads its text afresh: a marker whose second byte it begins with is no blank there.
  if (cutMarker != nullptr && cutMarker + 1 == line) *line = kMarkerByte;
  return {static_cast<std::size_t>(line - text), false};
}

bool Paginate(platform::FileStream& script, Scrambling scrambling, const LineBreaker& breaker,
              std::int32_t linesPerPage, PageFileWriter& pageFile) noexcept {
  if (script.Length() > std::numeric_limits<std::uint32_t>::max()) return false;
  ScriptWindow window(script, scrambling);
  PageEntry entry{0, 0};
  pageFile.Add(entry);
  for (PageSpan page; !page.endsText;) {
    if (!window.Fill(kMaxPageBytes)) return false;
    const std::span<std::uint8_t> ahead = window.Ahead();
    if (ahead.empty()) break;
    page = MeasureNextPage(breaker, linesPerPage, ahead);
    if (page.byteCount == 0 && !page.endsText) break;
    entry.text_offset += static_cast<std::uint32_t>(page.byteCount);
    entry.first_word += CountWords(ahead.first(page.byteCount));
    pageFile.Add(entry);
    window.Pass(page.byteCount);
  }
  return true;
}

}  // namespace tavimo::pages
