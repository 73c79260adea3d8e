// Where one sentence of a recording begins and ends, by the stored study file.
#pragma once

#include <cstdint>

#include "lesson_session.h"

namespace tavimo::host {

struct Stretch {
  std::int64_t startMs = 0;
  std::int64_t endMs = 0;
};

// A Refusal when the recording was not cut, or has no such sentence.
[[nodiscard]] Stretch StretchOf(LessonSession& session, int sentence);

}  // namespace tavimo::host
