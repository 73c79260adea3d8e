// What the learner answered, and when: one line for every answer, so that progress shows. The file is only ever added to.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include "question_bank.h"

namespace tavimo::host {

enum class Outcome { Right, Wrong, Skipped };

class ScoreFile {
 public:
  // Reads what was answered before; a line that is damaged counts for nothing.
  explicit ScoreFile(std::filesystem::path path);

  // How the question was answered before this run; none where it never was, or has changed since. What was skipped
  // counts for nothing.
  [[nodiscard]] std::optional<Outcome> LastOutcome(const Exercise& question) const;

  // Adds an answer, dated now. given is what was typed, 0 for a question that was skipped. A Refusal when the line cannot
  // be written.
  void Add(const Exercise& question, char given, Outcome outcome);

 private:
  std::filesystem::path path_;
  std::map<std::string, Outcome> last_;  // by the question's key
  bool endsWithLine_ = true;             // a kill may have cut the last line off
};

}  // namespace tavimo::host
