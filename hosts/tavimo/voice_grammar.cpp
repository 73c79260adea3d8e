// The words of play, record, takes, compare, recover and devices: the learner's voice.
#include "grammar.h"
#include "text.h"

namespace tavimo::host {

namespace {

constexpr const char* kFileDevice = "file:";

// The working folder will be another one by the time the file is opened.
std::string WithAbsoluteFile(const std::string& device) {
  if (!device.starts_with(kFileDevice)) return device;
  return kFileDevice + Utf8(Absolute(device.substr(std::string(kFileDevice).size())));
}

TakesAction ActionOf(const std::string& word) {
  if (word == "play") return TakesAction::Play;
  return word == "rm" ? TakesAction::Remove : TakesAction::List;
}

void AddTake(Grammar& grammar, CLI::App& command) {
  command.add_option("--take", grammar.words.take, "The take of the sentence, from 1; the newest by itself")
      ->check(NumberCheck())
      ->type_name("K");
}

void AddPlay(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand("play", "Play a sentence of a recording that was cut", RunPlay);
  grammar.AddFile(command);
  grammar.AddSentence(command).required();
  command.add_option("--repeat", grammar.options.repeat, "How many times, 1 to 1000")
      ->check(Quietly(CLI::Range(1, 1000)))
      ->type_name("K");
  command.add_option("--gap", grammar.words.gap, "The silence between two times, in seconds")
      ->check(TimeCheck())
      ->type_name("SECONDS");
  grammar.AddDevice(command, "A loudspeaker from tavimo devices");
}

void AddTakeEnds(Grammar& grammar, CLI::App& command) {
  command
      .add_option("--silence", grammar.words.silence,
                  "The silence behind the learner's words that ends the take; 2 by itself, none with --seconds")
      ->check(TimeCheck())
      ->type_name("SECONDS");
  command.add_option("--seconds", grammar.words.seconds, "The longest the take may be")
      ->check(TimeCheck())
      ->type_name("SECONDS");
}

void AddRecord(Grammar& grammar) {
  CLI::App& command =
      grammar.AddCommand("record", "Record the learner after a sentence of a recording that was cut", RunRecord);
  command.footer(
      "\nEnter, q, Ctrl-C or silence ends a take. Every take is a file of its own: one that is continued stays, and\n"
      "the new one begins with its sound.");
  grammar.AddFile(command);
  grammar.AddSentence(command).required();
  AddTakeEnds(grammar, command);
  grammar.AddDevice(command, "A microphone from tavimo devices, or file:PATH, a wave file in its place");
  auto* append = command.add_flag("--append", grammar.options.append, "Continue the newest take of the sentence");
  command.add_option("--at", grammar.words.atMs, "Record over the newest take from that moment on")
      ->check(Quietly(CLI::Range(0, 2'000'000'000)))
      ->excludes(append)
      ->type_name("MS");
}

void AddTakes(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand("takes", "List, play or remove what the learner has recorded", RunTakes);
  grammar.AddAction(command, "list, play or rm", {"list", "play", "rm"});
  grammar.AddFile(command);
  grammar.AddSentence(command);
  AddTake(grammar, command);
  grammar.AddDevice(command, "For play, a loudspeaker from tavimo devices");
}

void AddCompare(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand("compare", "Draw a sentence and a take of it under each other", RunCompare);
  grammar.AddFile(command);
  grammar.AddSentence(command).required();
  AddTake(grammar, command);
  grammar.AddDigestKind(command);
  grammar.AddOutput(command, "The picture to write", "PNG").required();
}

}  // namespace

void AddVoiceCommands(Grammar& grammar) {
  AddPlay(grammar);
  AddRecord(grammar);
  AddTakes(grammar);
  AddCompare(grammar);
  grammar.AddCommand("recover", "Keep the recordings of programs that died while recording", RunRecover);
  grammar.AddCommand("devices", "List the microphones and loudspeakers", RunDevices);
}

std::string FinishVoice(Grammar& grammar) {
  const Words& words = grammar.words;
  Options& options = grammar.options;
  if (words.sentence > 0) options.sentence = words.sentence;
  if (words.take > 0) options.take = words.take;
  if (words.atMs >= 0) options.atMs = words.atMs;
  if (!words.silence.empty()) options.silenceLengthMs = ParseTime(words.silence);
  if (!words.seconds.empty()) options.lengthMs = ParseTime(words.seconds);
  if (!words.gap.empty()) options.gapMs = ParseTime(words.gap).value();
  options.device = WithAbsoluteFile(options.device);
  options.takesAction = ActionOf(words.action);
  if (options.silenceLengthMs == 0 || options.lengthMs == 0) return "--silence and --seconds must be above 0";
  if (options.take && !options.sentence) return "--take counts the takes of one sentence; name it with --sentence";
  if (options.command == RunTakes && options.takesAction == TakesAction::Remove && !options.take) {
    return "rm removes one take: name it with --sentence and --take";
  }
  return {};
}

}  // namespace tavimo::host
