// The exercises of a lesson as the engine's question bank serves them, for people to read.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "lesson_session.h"

namespace tavimo::host {

enum class ExerciseKind { Question, Dialogue, Passage, PassageQuestion };

struct Exercise {
  ExerciseKind kind = ExerciseKind::Question;
  int sentence = 0;  // from 1, as are the numbers
  int number = 0;    // of a question among the questions, of a passage among the passages
  char answer = 0;   // 'A' to 'Z'; 0 for what is no question
  std::string text;  // UTF-8, as are the following
  std::string choices;
  std::string title;                   // of a passage
  std::optional<std::size_t> passage;  // the exercise that a passage question belongs to

  [[nodiscard]] bool IsQuestion() const {
    return kind == ExerciseKind::Question || kind == ExerciseKind::PassageQuestion;
  }
};

// One for each sentence, as they are compiled; LoadExercises brings them up to date.
[[nodiscard]] std::vector<Exercise> ReadExercises(const LessonSession& session);

// The picture of the lesson, beside its recording.
[[nodiscard]] std::optional<std::filesystem::path> PictureOf(const LessonSession& session);

}  // namespace tavimo::host
