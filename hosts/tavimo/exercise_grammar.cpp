// The words of questions: lint, compile, list, show and quiz.
#include "grammar.h"
#include "script_text.h"

namespace tavimo::host {

namespace {

constexpr std::int64_t kMostSentences = 999'999;

constexpr const char* kAbout = "Check, compile, show and ask the questions of a lesson";

constexpr const char* kFooter =
    "\nThe questions of unit1.wav stand in unit1.scr beside it, one record for every sentence, in UTF-8 or GBK:\n"
    "\n"
    "  ##N1T1                   question 1\n"
    "  What is on the table?\n"
    "  ##XZ                     its choices\n"
    "  A. a book\n"
    "  B. a dog\n"
    "  $$A                      the right one\n"
    "  ##NT3                    a passage, up to a line $$; T2 in place of T1 makes a question on it\n"
    "\n"
    "unit1.jpg, .bmp, .gif or .dib beside it is the lesson's picture. Titles of passages stand in article.txt there, "
    "in\n"
    "a section [unit1]: 1=Title of the first passage.";

// What a recording's questions are made from.
void AddSource(Grammar& grammar, CLI::App& command) {
  grammar.AddFile(command);
  command.add_option("--script", grammar.words.script, "The script, where it is not NAME.scr beside the recording")
      ->type_name("SCRIPT");
  grammar.AddEncoding(command);
}

void AddLint(Grammar& grammar, CLI::App& questions) {
  CLI::App& command =
      grammar.AddCommandTo(questions, "lint", "Find every fault of a script, by line and column", RunQuestionsLint);
  grammar.AddFiles(command, "The scripts");
  auto* count = command
                    .add_option("--sentences", grammar.words.sentenceCount,
                                "How many sentences the recording has; as many as the script has records by itself")
                    ->check(Quietly(CLI::Range(std::int64_t{0}, kMostSentences)))
                    ->type_name("N");
  command.add_option("--recording", grammar.words.recording, "The recording whose sentences the script must fit")
      ->excludes(count)
      ->type_name("WAV");
  grammar.AddEncoding(command);
}

void AddShow(Grammar& grammar, CLI::App& questions) {
  CLI::App& command = grammar.AddCommandTo(questions, "show", "Show one exercise, its answer too", RunQuestionsShow);
  AddSource(grammar, command);
  command.add_option("N", grammar.words.sentence, "The sentence it belongs to, from 1")
      ->required()
      ->check(NumberCheck())
      ->type_name("");
}

void AddQuiz(Grammar& grammar, CLI::App& questions) {
  CLI::App& command = grammar.AddCommandTo(questions, "quiz", "Ask the questions and keep the score", RunQuestionsQuiz);
  command.footer(
      "\nEvery sentence is played, then its question asked. Answer with a letter; Enter skips the question, a point\n"
      "plays the sentence again, q ends. Answers are kept in scores.tsv in the lesson's folder.");
  AddSource(grammar, command);
  command.add_flag("--only-wrong", grammar.options.onlyWrong, "Only the questions answered wrong the last time");
  auto* silent = command.add_flag("--silent", grammar.options.isSilent, "Play nothing");
  grammar.AddDevice(command, "A loudspeaker from tavimo devices");
  silent->excludes(command.get_option("--device"));
}

}  // namespace

void AddExerciseCommands(Grammar& grammar) {
  CLI::App& questions = *grammar.app.add_subcommand("questions", kAbout);
  questions.require_subcommand(0, 1);  // a missing one is told of in command_line.cpp
  AddLint(grammar, questions);
  AddSource(grammar,
            grammar.AddCommandTo(questions, "compile", "Compile the script of a recording", RunQuestionsCompile));
  AddSource(grammar, grammar.AddCommandTo(questions, "list", "List the exercises of a recording", RunQuestionsList));
  AddShow(grammar, questions);
  AddQuiz(grammar, questions);
  questions.footer(kFooter);  // last, or the help of each would repeat it
}

std::string FinishExercises(Grammar& grammar) {
  const Words& words = grammar.words;
  Options& options = grammar.options;
  if (!words.encoding.empty()) options.encoding = words.encoding;
  if (!words.script.empty()) options.script = Absolute(words.script);
  if (!words.recording.empty()) options.recording = Absolute(words.recording);
  if (words.sentenceCount >= 0) options.sentenceCount = static_cast<std::size_t>(words.sentenceCount);
  return {};
}

}  // namespace tavimo::host
