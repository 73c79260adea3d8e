// Deletes sentences of the open lesson through the engine, in a change that can be taken back.
#pragma once

#include <filesystem>
#include <vector>

#include "lesson_session.h"

namespace tavimo::host {

struct Deletion {
  std::size_t sentencesLeft = 0;
  std::size_t bookmarksLost = 0;  // those that stood in deleted sentences
  std::filesystem::path backup;   // in the working folder
};

// The numbers count from 1; twice the same one counts once. A Refusal, and nothing has changed, when there is no such
// sentence, none would be left, or recording or study file cannot be written.
[[nodiscard]] Deletion DeleteSentences(LessonSession& session, std::vector<int> sentences);

}  // namespace tavimo::host
