// `tavimo questions`: lint, compile, list and show. The quiz has a file of its own.
#include <iostream>

#include "exercise_list.h"
#include "options.h"
#include "question_files.h"
#include "refusal.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

QuestionSource SourceOf(const Options& options) { return {options.script, options.encoding}; }

std::optional<std::size_t> SentencesToFit(const Options& options) {
  if (!options.recording) return options.sentenceCount;
  LessonSession session(options.home, *options.recording);
  return SentenceCount(session);
}

// Whether the script is accepted.
bool Lint(const Options& options, const fs::path& script, std::optional<std::size_t> sentenceCount) {
  const CheckedScript checked = CheckScript(script, options.encoding, sentenceCount);
  const bool isAccepted = checked.faultCount == 0;
  std::cout << checked.lines << Readable(script.filename()) << ": " << Counted(checked.lint.recordCount, "record")
            << ", " << Counted(checked.faultCount, "fault") << (isAccepted ? "; accepted" : "; not accepted") << '\n';
  return isAccepted;
}

void PrintPicture(const LessonSession& session) {
  const auto picture = PictureOf(session);
  if (!picture) return;
  std::cout << "picture: " << Readable(picture->filename()) << " in " << Readable(picture->parent_path()) << '\n';
}

}  // namespace

int RunQuestionsLint(const Options& options) {
  const std::optional<std::size_t> sentenceCount = SentencesToFit(options);
  int exitCode = kDone;
  for (const fs::path& script : options.files) {
    StopIfInterrupted();
    try {
      if (!Lint(options, script, sentenceCount)) exitCode = kRefused;
    } catch (const Refusal& refusal) {
      std::cerr << "tavimo: " << refusal.what() << '\n';
      exitCode = kRefused;
    }
  }
  return exitCode;
}

int RunQuestionsCompile(const Options& options) {
  LessonSession session(options.home, options.files.front());
  const std::size_t count = CompileQuestions(session, SourceOf(options));
  std::cout << Readable(session.Recording().filename()) << ": " << Counted(count, "record") << " compiled to "
            << Readable(fs::absolute(QuestionIndex(session))) << '\n';
  return kDone;
}

int RunQuestionsList(const Options& options) {
  LessonSession session(options.home, options.files.front());
  PrintExercises(std::cout, session, LoadExercises(session, SourceOf(options)));
  return kDone;
}

int RunQuestionsShow(const Options& options) {
  LessonSession session(options.home, options.files.front());
  const std::vector<Exercise> exercises = LoadExercises(session, SourceOf(options));
  const auto number = static_cast<std::size_t>(options.sentence.value());
  if (number > exercises.size()) {
    throw Refusal("there is no exercise " + std::to_string(number) + "; it has " +
                  Counted(exercises.size(), "exercise"));
  }
  const Exercise& exercise = exercises[number - 1];
  if (exercise.passage) {
    std::cout << "on " << NameOf(exercises[*exercise.passage]) << '\n';
    PrintText(std::cout, exercises[*exercise.passage].text);
  }
  std::cout << NameOf(exercise) << " (sentence " << exercise.sentence << ")\n";
  PrintText(std::cout, exercise.text);
  PrintText(std::cout, exercise.choices);
  if (exercise.IsQuestion()) std::cout << "answer: " << exercise.answer << '\n';
  PrintPicture(session);
  return kDone;
}

}  // namespace tavimo::host
