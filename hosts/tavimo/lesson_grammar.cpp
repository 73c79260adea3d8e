// The words of info, digest, cut, wave and lesson: what is done to a recording as a whole.
#include "grammar.h"
#include "text.h"

namespace tavimo::host {

namespace {

WaveStyle StyleOf(const std::string& word) {
  if (word == "full") return WaveStyle::Full;
  return word == "bars" ? WaveStyle::Bars : WaveStyle::Half;
}

void AddInfo(Grammar& grammar) {
  grammar.AddFiles(
      grammar.AddCommand("info", "Tell what a recording is and whether the engine can work with it", RunInfo));
}

void AddDigest(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand("digest", "Make the digest: one level for every 40 ms", RunDigest);
  grammar.AddFile(command);
  grammar.AddDigestKind(command);
}

void AddCut(Grammar& grammar) {
  CLI::App& command =
      grammar.AddCommand("cut", "Cut a recording into sentences and store them in its study file", RunCut);
  grammar.AddFile(command);
  grammar.AddDigestKind(command);
  command
      .add_option("--threshold", grammar.options.threshold,
                  "The loudest level that is still silence, 0 to 128; found by itself")
      ->check(Quietly(CLI::Range(0, 128)))
      ->type_name("LEVEL");
  command
      .add_option("--silence", grammar.options.silenceMs,
                  "The silence that ends a sentence, 40 to 40999; found by itself")
      ->check(Quietly(CLI::Range(40, 40999)))
      ->type_name("MS");
  command.add_flag("--json", grammar.words.json, "Print the sentences for a program");
}

void AddWave(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand("wave", "Draw a recording, its stored sentences marked", RunWave);
  grammar.AddFile(command);
  grammar.AddDigestKind(command);
  grammar.AddOutput(command, "The picture to write", "PNG").required();
  command.add_option("--style", grammar.words.style, "half (default), full or bars")
      ->check(Quietly(CLI::IsMember({"half", "full", "bars"})))
      ->type_name("STYLE");
  grammar.AddStretch(command);
  command.add_option("--width", grammar.options.width, "At most, 64 to 2048; 1200 by itself")
      ->check(Quietly(CLI::Range(kLeastPictureWidth, kMostPictureWidth)))
      ->type_name("PIXELS");
  command.add_option("--height", grammar.options.height, "80 to 2000; 240 by itself")
      ->check(Quietly(CLI::Range(kLeastPictureHeight, kMostPictureHeight)))
      ->type_name("PIXELS");
}

void AddLesson(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand(
      "lesson", "Do it all: sentences, exercises and script of recordings in a page for the browser", RunLesson);
  command.footer(
      "\nThe page is lesson.html; of several recordings each has its own, NAME-lesson.html. It takes what lies beside\n"
      "a recording: NAME.scr (questions), NAME.txt (script), NAME.jpg or NAME.bmp (picture), NAME.learner.wav "
      "(voice).\n"
      "Sentences that the study file already holds stay; `tavimo cut` makes them anew.");
  grammar.AddFiles(command, "Recordings, MP3 and the like too, or folders of them");
  grammar.AddDigestKind(command);
  grammar.AddOutput(command, "The folder for page and pictures (default: this one)", "FOLDER");
  command
      .add_option("--learner-sentence", grammar.options.learnerSentence,
                  "The sentence that a file NAME.learner.wav beside a recording answers; 2 by itself")
      ->check(NumberCheck())
      ->type_name("N");
  command.add_flag("--timing", grammar.options.isTimed, "Tell on standard error how long each stage took");
}

}  // namespace

void AddLessonCommands(Grammar& grammar) {
  AddInfo(grammar);
  AddDigest(grammar);
  AddCut(grammar);
  AddWave(grammar);
  AddLesson(grammar);
}

std::string FinishLesson(Grammar& grammar) {
  const Words& words = grammar.words;
  Options& options = grammar.options;
  options.digestKind = words.exact ? DigestKind::Exact : DigestKind::Peak;
  options.tableForm = words.json ? TableForm::Json : TableForm::ForPeople;
  options.style = StyleOf(words.style);
  if (!words.from.empty()) options.fromMs = ParseTime(words.from).value();
  if (!words.to.empty()) options.toMs = ParseTime(words.to).value();
  if (options.toMs && *options.toMs <= options.fromMs) return "--to must lie behind --from";
  return {};
}

}  // namespace tavimo::host
