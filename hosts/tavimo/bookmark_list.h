// The bookmarks of the study file that the session loaded last, as people read them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lesson_session.h"

namespace tavimo::host {

inline constexpr int kMostBookmarks = 20;

struct Bookmark {
  std::uint32_t timeMs = 0;
  std::string gbkLabel;  // as it is stored: other programs' labels may have no form in UTF-8
};

// A Refusal for a label that has no GBK form.
[[nodiscard]] std::string GbkLabel(const std::string& utf8);

// In the order of adding, without those past the end, which belong to another recording. REQUIRES: the session's LoadStudyFile.
[[nodiscard]] std::vector<Bookmark> Bookmarks(const LessonSession& session);

// Stores these bookmarks with the sentence starts, their labels as far as the engine has room, and reads them back. A
// Refusal when they did not reach the disk.
// REQUIRES: at most kMostBookmarks, none at 0 ms or past the end.
void StoreBookmarks(LessonSession& session, const std::vector<std::uint32_t>& starts,
                    const std::vector<Bookmark>& bookmarks);

}  // namespace tavimo::host
