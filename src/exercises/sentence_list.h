// The lines of the host's list of items.
#pragma once

#include <array>

#include "exercises/question_record.h"

namespace tavimo::exercises {

using ListLine = std::array<char, 24>;

// GBK, zero-terminated; null for a type that is not listed. The text may stand in room.
[[nodiscard]] const char* LineOf(const QuestionRecord& record, ListLine& room) noexcept;

}  // namespace tavimo::exercises
