// What an author is told about a script that does not compile. Spacing and punctuation are part of the texts.
#pragma once

#include <string_view>

#include "core/fixed_text.h"
#include "exercises/question_compiler.h"

namespace tavimo::exercises {

using CompilerMessage = core::FixedText<319>;

// GBK; empty when there is nothing to say. In a text that is too long the quoted line is cut behind a whole character,
// and when that is not enough the path loses its first characters: where the fault is and how to mend it stay.
[[nodiscard]] CompilerMessage MessageOf(const CompileReport& report, std::string_view scriptPath) noexcept;

}  // namespace tavimo::exercises
