// The script that is open for reading page by page, with its page file and its highlight file.
#pragma once

#include <cstdint>

#include "pages/highlight_file.h"
#include "pages/page_file.h"
#include "pages/page_highlights.h"
#include "pages/page_text.h"
#include "pages/script_scrambling.h"
#include "platform/files.h"

namespace tavimo::pages {

struct OpenScript {
  platform::FileStream script;
  platform::FileStream pageFile;
  HighlightFile highlightFile;
};

// The page that was read last.
struct CurrentPage {
  PageText text{};
  PageHighlights highlights;
};

// Makes the highlight file anew where it is missing or stale, and opens the three. False when one cannot be opened, or when
// the marks or their note would be written into the script or the page file. What was opened before a failure stays open.
[[nodiscard]] bool OpenScriptFiles(const char* scriptPath, const char* pageFilePath, const char* highlightPath,
                                   OpenScript& files) noexcept;

void CloseScriptFiles(OpenScript& files) noexcept;

// False, and the page stays as it was: no such page, one whose entries decrease or cannot be those of a page, or one that
// cannot be read. A page whose text or states the files do not hold in full is shorter, or has plain words.
[[nodiscard]] bool ReadPage(OpenScript& files, Scrambling scrambling, std::int32_t pageIndex,
                            CurrentPage& page) noexcept;

}  // namespace tavimo::pages
