#include "pages/word_selection.h"

#include "pages/byte_kinds.h"

namespace tavimo::pages {

namespace {

bool IsOnLines(const PageLayout& layout, const PageSettings& settings, std::int32_t x, std::int32_t y) noexcept {
  return x >= settings.left && x <= std::int64_t{settings.left} + settings.pageWidth && y >= settings.top &&
         y < settings.top + std::int64_t{settings.lineHeight} * layout.lineCount;
}

// Whether the byte under the pointer may be clicked; also where there is none, right of the line's text.
bool MayBeClicked(const PageText& text, const PageLayout& layout, const LaidLine& line, std::int32_t left,
                  std::int32_t x) noexcept {
  std::int64_t end = left;
  for (std::int32_t at = line.start; at < line.start + line.length; ++at) {
    end += layout.advances[static_cast<std::size_t>(at)];
    const std::uint8_t byte = text[static_cast<std::size_t>(at)];
    if (end > x) return IsLetter(byte) || byte == '-';
  }
  return true;
}

}  // namespace

std::optional<Selection> WordAt(const PageText& text, const PageLayout& layout, const PageSettings& settings,
                                std::int32_t x, std::int32_t y) noexcept {
  if (!IsOnLines(layout, settings, x, y)) return std::nullopt;
  const auto lineIndex = static_cast<std::int32_t>((std::int64_t{y} - settings.top) / settings.lineHeight);
  const LaidLine& line = layout.lines[static_cast<std::size_t>(lineIndex)];
  if (!MayBeClicked(text, layout, line, settings.left, x)) return std::nullopt;
  std::int32_t word = line.firstWord;
  const std::int32_t end = line.firstWord + line.wordCount;
  while (word < end && layout.words[static_cast<std::size_t>(word)].x <= x) ++word;
  if (word == line.firstWord) return std::nullopt;
  return Selection{lineIndex, word - 1};
}

bool ToggleMark(std::int32_t word, PageLayout& layout, PageHighlights& highlights, HighlightFile& file) noexcept {
  std::uint8_t& state = layout.words[static_cast<std::size_t>(word)].state;
  const std::uint8_t stateBefore = state;
  state = state == 0 ? 1 : 0;
  PageHighlights changed = highlights;
  const LaidLine& last = layout.lines[static_cast<std::size_t>(layout.lineCount - 1)];
  for (std::int32_t i = 0; i < last.firstWord + last.wordCount; ++i) {
    changed.SetState(i, layout.words[static_cast<std::size_t>(i)].state);
  }
  if (!file.Save(changed)) {
    state = stateBefore;
    return false;
  }
  highlights = changed;
  return true;
}

std::string_view WordText(const PageText& text, const PageLayout& layout, const Selection& selection) noexcept {
  const LaidWord& word = layout.words[static_cast<std::size_t>(selection.word)];
  const std::int32_t lineStart = layout.lines[static_cast<std::size_t>(selection.line)].start;
  return {reinterpret_cast<const char*>(text.data()) + lineStart + word.start, static_cast<std::size_t>(word.length)};
}

}  // namespace tavimo::pages
