#include "exercise_list.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

#include "text.h"

namespace tavimo::host {

namespace {

constexpr std::size_t kBeginningBytes = 60;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    line.erase(line.find_last_not_of(" \t\r") + 1);
    std::replace(line.begin(), line.end(), '\t', ' ');
    lines.push_back(ReadableText(line));
    at = end + 1;
  }
  return lines;
}

std::string BeginningOf(const Exercise& exercise) {
  if (!exercise.IsQuestion()) return exercise.title;
  const std::vector<std::string> lines = LinesOf(exercise.text);
  if (lines.empty()) return "";
  const std::string start = Shortened(lines.front(), kBeginningBytes);
  return start.size() < lines.front().size() || lines.size() > 1 ? start + " …" : start;
}

std::string KindAndNumber(const Exercise& exercise) {
  const std::string kind = exercise.IsQuestion()                    ? "question "
                           : exercise.kind == ExerciseKind::Passage ? "passage "
                                                                    : "dialogue ";
  return kind + std::to_string(exercise.number);
}

}  // namespace

void PrintExercises(std::ostream& out, const LessonSession& session, const std::vector<Exercise>& exercises) {
  const auto questions = static_cast<std::size_t>(std::count_if(
      exercises.begin(), exercises.end(), [](const Exercise& exercise) { return exercise.IsQuestion(); }));
  out << Readable(session.Recording().filename()) << ": " << Counted(exercises.size(), "exercise") << ", "
      << Counted(questions, "question") << " among them";
  if (const auto picture = PictureOf(session)) out << "; picture " << Readable(picture->filename());
  out << "\nsentence  exercise\n";
  for (const Exercise& exercise : exercises) {
    out << std::setw(8) << exercise.sentence << "  " << std::left << std::setw(13) << KindAndNumber(exercise)
        << std::right << (exercise.passage ? "  " : "") << BeginningOf(exercise) << '\n';
  }
}

void PrintText(std::ostream& out, const std::string& text) {
  for (const std::string& line : LinesOf(text)) out << "  " << line << '\n';
}

std::string NameOf(const Exercise& exercise) {
  return KindAndNumber(exercise) + (exercise.IsQuestion() ? "" : ": " + ReadableText(exercise.title));
}

}  // namespace tavimo::host
