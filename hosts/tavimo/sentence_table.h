// The sentences of a recording as people read them, and as programs do.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "lesson_session.h"
#include "sentence_finder.h"

namespace tavimo::host {

// A line of what it is, then number, start and length of each sentence. origin says where the starts come from.
void PrintTable(std::ostream& out, const LessonSession& session, const std::vector<std::uint32_t>& startsMs,
                const std::string& origin);

// One JSON object in one line: recording, length_ms, threshold, silence_ms, stored, sentences (number, start_ms,
// length_ms).
void PrintJson(std::ostream& out, const LessonSession& session, const Cut& cut);

// "threshold 4, silence 480 ms".
[[nodiscard]] std::string DescribeParameters(const Cut& cut);

}  // namespace tavimo::host
