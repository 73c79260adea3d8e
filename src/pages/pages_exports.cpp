// The door of text pages: page layout, page display and word selection.
#include <algorithm>
#include <cstring>

#include "pages/page_drawing.h"
#include "pages/page_file.h"
#include "pages/pages_state.h"
#include "pages/pagination.h"
#include "pages/script_scrambling.h"
#include "pages/word_selection.h"
#include "platform/utility.h"
#include "tavimo.h"

using namespace tavimo;
using pages::State;

extern "C" {

std::int32_t VC_CALL vcSetPageSettings(VcDc dc, std::int32_t width, std::int32_t height, std::int32_t left,
                                       std::int32_t top, std::int32_t spacing) noexcept {
  platform::TextSize sample;
  if (!platform::MeasureText(dc, "abc", sample)) return 0;
  const std::int32_t lineHeight = pages::LineHeight(sample.height, spacing);
  if (lineHeight <= 0) return 0;
  State().pageSettings = {width, lineHeight, pages::LinesPerPage(height, lineHeight), left, top};
  return lineHeight;
}

std::int32_t VC_CALL vcGenPageFile(std::int32_t scrambled, const char* script_path, const char* page_file_path,
                                   VcDc dc) noexcept {
  constexpr std::int32_t kWritten = -2;
  const pages::PageSettings& settings = State().pageSettings;
  platform::ByteAdvances advances;
  platform::FileStream script = platform::FileStream::Open(script_path, platform::OpenMode::Read);
  pages::PageFileWriter pageFile;
  if (!pages::MeasurePageBytes(dc, advances) || !script.IsOpen()) return -1;
  if (platform::IsSameFile(script_path, page_file_path) || !pageFile.Begin(page_file_path)) return -1;
  const pages::LineBreaker breaker(advances, settings.pageWidth);
  const bool isRead = pages::Paginate(script, pages::ScramblingOf(scrambled), breaker, settings.linesPerPage, pageFile);
  if (!isRead || !pageFile.Finish()) return -1;
  platform::SetSameFileTime(script_path, page_file_path);
  return kWritten;
}

std::int32_t VC_CALL vcCountPage(VcDc dc) noexcept {
  platform::ByteAdvances advances;
  pages::PageLayout& layout = State().pageLayout;
  layout.lineCount = 0;
  if (!pages::MeasurePageBytes(dc, advances)) return 0;
  pages::LayOutPage(State().page.text, State().page.highlights, State().pageSettings, advances, layout);
  return layout.lineCount;
}

std::int32_t VC_CALL vcOpenScript(const char* script_path, const char* page_file_path, const char* highlight_path,
                                  std::int32_t* slots) noexcept {
  pages::OpenScript& files = State().openScript;
  vcCloseScript();
  // A page of another script: a click on it would set marks among this one's words.
  State().page = {};
  State().pageLayout.lineCount = 0;
  if (!pages::OpenScriptFiles(script_path, page_file_path, highlight_path, files)) return -1;
  if (slots != nullptr) *slots = files.highlightFile.WordSlots();
  return pages::CountPages(files.pageFile);
}

void VC_CALL vcCloseScript() noexcept { pages::CloseScriptFiles(State().openScript); }

std::int32_t VC_CALL vcReadBookPageIdx(std::int32_t count, VcPageIndexEntry* entries) noexcept {
  platform::FileStream& pageFile = State().openScript.pageFile;
  if (pageFile.Seek(0, platform::SeekFrom::Start) < 0) return -1;
  if (count < 0 || entries == nullptr) return 0;
  return pages::ReadEntries(pageFile, {entries, static_cast<std::size_t>(count)});
}

std::int32_t VC_CALL vcReadPage(std::int32_t scrambled, std::int32_t page) noexcept {
  pages::CurrentPage& current = State().page;
  if (!pages::ReadPage(State().openScript, pages::ScramblingOf(scrambled), page, current)) return -1;
  State().pageLayout.lineCount = 0;
  return current.highlights.FirstWord();
}

std::int32_t VC_CALL vcDisplayPage(VcDc dc) noexcept {
  const pages::PageLayout& layout = State().pageLayout;
  for (std::int32_t i = 0; i < layout.lineCount; ++i) {
    pages::DrawTextLine(dc, State().page.text, layout, State().pageSettings, i);
  }
  return layout.lineCount;
}

std::int32_t VC_CALL vcBeginSelect(VcDc dc, std::int32_t x, std::int32_t y, std::int32_t* state, char* word) noexcept {
  constexpr std::size_t kLongestWord = 160;
  pages::CurrentPage& page = State().page;
  pages::PageLayout& layout = State().pageLayout;
  const auto selection = pages::WordAt(page.text, layout, State().pageSettings, x, y);
  if (!selection) return 0;
  if (!pages::ToggleMark(selection->word, layout, page.highlights, State().openScript.highlightFile)) return 0;
  pages::DrawTextLine(dc, page.text, layout, State().pageSettings, selection->line);
  const std::string_view text = pages::WordText(page.text, layout, *selection);
  if (word != nullptr) word[text.copy(word, kLongestWord)] = '\0';
  if (state != nullptr) *state = layout.words[static_cast<std::size_t>(selection->word)].state;
  return static_cast<std::int32_t>(text.size());
}

}  // extern "C"
