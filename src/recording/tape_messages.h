// What the learner is told when a tape cannot be made or opened. The number behind "ErrorNo" is how support tells the
// steps apart; spacing and punctuation are part of the texts, as translators and manuals quote them.
#pragma once

#include "recording/tape_file.h"

namespace tavimo::recording {

// GBK, zero-terminated; null for None.
[[nodiscard]] const char* TapeMessage(TapeFault fault) noexcept;

}  // namespace tavimo::recording
