// Finds everything that is wrong with a question script in one reading, where the engine's compiler stops at the first
// fault. Both accept the same scripts.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavimo::host {

// A fault keeps the script from being compiled. A note tells of what compiles and is hardly meant.
enum class Weight { Fault, Note };

struct Finding {
  std::size_t line = 1;  // as an editor counts; columns in characters; both from 1
  std::size_t column = 1;
  Weight weight = Weight::Fault;
  std::string what;  // and how to mend it
};

struct LintResult {
  std::vector<Finding> findings;  // in the order of the script
  std::size_t recordCount = 0;    // those with faults too
  [[nodiscard]] std::size_t FaultCount() const;
};

// Without a count the script is taken for that of a recording with as many sentences as it has records.
[[nodiscard]] LintResult LintQuestions(std::string_view gbk, std::optional<std::size_t> sentenceCount);

}  // namespace tavimo::host
