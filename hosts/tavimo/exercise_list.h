// Exercises as a person reads them on a terminal.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "question_bank.h"

namespace tavimo::host {

// One line for each exercise: its sentence, what it is, and how its text begins.
void PrintExercises(std::ostream& out, const LessonSession& session, const std::vector<Exercise>& exercises);

// A text of several lines, moved in.
void PrintText(std::ostream& out, const std::string& text);

// "question 3", "passage 1: A Trip to London".
[[nodiscard]] std::string NameOf(const Exercise& exercise);

}  // namespace tavimo::host
