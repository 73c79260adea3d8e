#include "exercises/exercises_state.h"

namespace tavimo::exercises {

namespace {
constinit CompilerSpace compilerSpace{};
constinit ExercisesState exercisesState{{}, {}, {}, {}, compilerSpace};
}  // namespace

ExercisesState& State() noexcept { return exercisesState; }

void ResetState() noexcept {
  exercisesState.questionIndex.Close();
  exercisesState.listedItems.Forget();
  exercisesState.wzFile.Close();
  exercisesState.currentQuestion = {};
}

}  // namespace tavimo::exercises
