#include "exercises/exercise_paths.h"

namespace tavimo::exercises {

std::string_view WithoutExtension(std::string_view path) noexcept {
  const std::size_t dot = path.rfind('.');
  return dot == 0 ? path : path.substr(0, dot);
}

bool ReplaceExtension(std::string_view path, std::string_view extension, ExercisePath& result) noexcept {
  return !path.empty() && path.size() <= kLongestPath && result.Assign(WithoutExtension(path), extension);
}

bool PathInTemp(std::string_view path, std::string_view extension, ExercisePath& result) noexcept {
  if (path.empty() || path.size() > kLongestPath) return false;
  const std::string_view name = path.substr(path.rfind('\\') + 1);
  return result.Assign(std::string_view("temp\\"), name.substr(0, name.rfind('.')), extension);
}

std::size_t BankStemLength(std::string_view path) noexcept {
  const std::size_t lastThree = path.size() - kShortestBankPath;
  return path[lastThree] == '.' ? lastThree + 1 : lastThree;
}

}  // namespace tavimo::exercises
