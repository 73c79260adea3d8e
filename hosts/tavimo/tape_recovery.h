// Brings back what was being recorded when a program or the machine died: no learner says a sentence twice for that.
#pragma once

#include <filesystem>
#include <vector>

#include "tape.h"

namespace tavimo::host {

struct RecoveryReport {
  std::vector<KeptTake> kept;                // their files absolute
  std::vector<std::filesystem::path> alive;  // lessons that another process records right now
  std::vector<std::string> failures;         // sentences for the person
};

// Looks into every lesson of the home folder and keeps each tape that nobody holds.
[[nodiscard]] RecoveryReport RecoverTapes(const std::filesystem::path& home);

// "lesson.wav, sentence 3: 0:02.345, kept as …".
[[nodiscard]] std::string Describe(const KeptTake& take);

// The same at the start of a command: a line on standard error for each tape that was found, nothing otherwise.
void RecoverAtStart(const std::filesystem::path& home);

}  // namespace tavimo::host
