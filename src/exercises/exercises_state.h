// The process-wide records of exercises.
#pragma once

#include "exercises/listed_items.h"
#include "exercises/question_compiler.h"
#include "exercises/question_record.h"
#include "platform/files.h"

namespace tavimo::exercises {

struct ExercisesState {
  platform::FileStream questionIndex;  // the open bank: its items
  ListedItems listedItems;             // of that bank, where they are kept
  platform::FileStream wzFile;         // and its texts
  QuestionRecord currentQuestion;      // the item in hand
  CompilerSpace& compilerSpace;        // stands apart, so that the library's file holds no empty pieces
};

ExercisesState& State() noexcept;

// Back to the state at load.
void ResetState() noexcept;

}  // namespace tavimo::exercises
