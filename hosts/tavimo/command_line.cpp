// The only file that includes CLI11, which takes longer to compile than the rest of the program.
#include "command_line.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "nearest_name.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kAbout =
    "tavimo takes a language lesson apart: it finds the sentences of a recording, stores and draws them, plays them,\n"
    "and records the learner who says them.\n"
    "Recordings are PCM wave files of 8 or 16 bits, mono or stereo.";

constexpr const char* kFooter =
    "\nEverything about a recording is kept in a folder of its own, HOME/lessons/NAME-HASH: its digest in temp, its\n"
    "study file in zud, the learner's voice in takes. The hash is that of the recording's full path, so recordings of "
    "one name in different folders\n"
    "keep apart, and one that is moved starts anew. A recording whose name the engine cannot take is reached by a\n"
    "link in alias. HOME is the person's data folder (~/.local/share/tavimo) unless --home names another.\n"
    "\nExit codes: 0 done, 1 refused (the reason is on standard error), 2 wrong usage.";

// What CLI11 fills before it is made into Options.
struct Words {
  std::string home;
  std::string file;
  std::vector<std::string> files;
  std::string output;
  std::string style = "half";
  std::string from;
  std::string to;
  std::string takesAction;
  std::string silence;
  std::string seconds;
  std::string gap;
  std::int64_t atMs = -1;
  int sentence = 0;
  int take = 0;
  bool exact = false;
  bool peak = false;
  bool json = false;
};

fs::path Absolute(const std::string& path) {
  const fs::path full = fs::absolute(PathFromUtf8(path)).lexically_normal();
  return full.has_filename() ? full : full.parent_path();  // a slash at the end says nothing
}

// A check that does not describe itself in the help, where the option's own text does.
CLI::Validator Quietly(CLI::Validator check) { return check.description(""); }

CLI::Validator TimeCheck() {
  return {[](const std::string& text) {
            return ParseTime(text) ? std::string() : "'" + text + "' is no time; write 12.5 or 1:02.5";
          },
          ""};
}

constexpr int kHighestNumber = 999'999;  // of sentences and takes

CLI::Validator NumberCheck() { return Quietly(CLI::Range(1, kHighestNumber)); }

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

WaveStyle StyleOf(const std::string& word) {
  if (word == "full") return WaveStyle::Full;
  return word == "bars" ? WaveStyle::Bars : WaveStyle::Half;
}

class Grammar {
 public:
  Grammar() : app_(kAbout, "tavimo") {
    app_.require_subcommand(0, 1);  // a missing one is told apart from a misspelled one below
    app_.fallthrough();
    app_.set_version_flag("--version", "tavimo " TAVIMO_VERSION);
    app_.add_option("--home", words_.home, "The folder for everything that is kept")->type_name("DIR");
    AddInfo();
    AddDigest();
    AddCut();
    AddWave();
    AddLesson();
    AddPlay();
    AddRecord();
    AddTakes();
    AddCompare();
    AddCommand("recover", "Keep the recordings of programs that died while recording", RunRecover);
    AddCommand("devices", "List the microphones and loudspeakers", RunDevices);
    app_.footer(kFooter);  // last, or every command's help would repeat it
  }

  ParsedCommandLine Parse(int argc, char** argv) {
    try {
      app_.parse(argc, argv);
    } catch (const CLI::Success& helpOrVersion) {
      app_.exit(helpOrVersion);
      return {};
    } catch (const CLI::ParseError& error) {
      // A word that nothing knows explains whatever else seems to be missing.
      return Complain(app_.remaining_size(true) == 0 ? error.what() : UnknownWord());
    }
    if (app_.get_subcommands().empty()) return Complain("say what to do: " + Commands());
    return Finish();
  }

 private:
  CLI::App& AddCommand(const char* name, const char* about, int (*run)(const Options&)) {
    CLI::App& command = *app_.add_subcommand(name, about);
    command.callback([this, run] { options_.command = run; });
    return command;
  }

  void AddFiles(CLI::App& command) {
    command.add_option("FILE", words_.files, "The recordings")->required()->type_name("");
  }

  void AddFile(CLI::App& command) {
    command.add_option("FILE", words_.file, "The recording")->required()->type_name("");
  }

  void AddDigestKind(CLI::App& command) {
    auto* exact = command.add_flag("--exact", words_.exact, "Use the engine's digest: the last sample of every 40 ms");
    command
        .add_flag("--peak", words_.peak, "Use the loudest sample of every 40 ms (default): finer for finding silence")
        ->excludes(exact);
  }

  void AddInfo() {
    AddFiles(AddCommand("info", "Tell what a recording is and whether the engine can work with it", RunInfo));
  }

  void AddDigest() {
    CLI::App& command = AddCommand("digest", "Make the digest: one level for every 40 ms", RunDigest);
    AddFile(command);
    AddDigestKind(command);
  }

  void AddCut() {
    CLI::App& command = AddCommand("cut", "Cut a recording into sentences and store them in its study file", RunCut);
    AddFile(command);
    AddDigestKind(command);
    command
        .add_option("--threshold", options_.threshold,
                    "The loudest level that is still silence, 0 to 128; found by itself")
        ->check(Quietly(CLI::Range(0, 128)))
        ->type_name("LEVEL");
    command
        .add_option("--silence", options_.silenceMs, "The silence that ends a sentence, 40 to 40999; found by itself")
        ->check(Quietly(CLI::Range(40, 40999)))
        ->type_name("MS");
    command.add_flag("--json", words_.json, "Print the sentences for a program");
  }

  void AddWave() {
    CLI::App& command = AddCommand("wave", "Draw a recording, its stored sentences marked", RunWave);
    AddFile(command);
    AddDigestKind(command);
    command.add_option("-o,--output", words_.output, "The picture to write")->required()->type_name("PNG");
    command.add_option("--style", words_.style, "half (default), full or bars")
        ->check(Quietly(CLI::IsMember({"half", "full", "bars"})))
        ->type_name("STYLE");
    command.add_option("--from", words_.from, "Where to begin: 12.5 or 1:02.5")->check(TimeCheck())->type_name("TIME");
    command.add_option("--to", words_.to, "Where to end")->check(TimeCheck())->type_name("TIME");
    command.add_option("--width", options_.width, "At most, 64 to 2048; 1200 by itself")
        ->check(Quietly(CLI::Range(kLeastPictureWidth, kMostPictureWidth)))
        ->type_name("PIXELS");
    command.add_option("--height", options_.height, "80 to 2000; 240 by itself")
        ->check(Quietly(CLI::Range(kLeastPictureHeight, kMostPictureHeight)))
        ->type_name("PIXELS");
  }

  void AddLesson() {
    CLI::App& command = AddCommand("lesson", "Do it all: digest, sentences, study file, picture", RunLesson);
    command.footer("\nSentences that the study file already holds stay; `tavimo cut` makes them anew.");
    AddFiles(command);
    AddDigestKind(command);
    command.add_option("-o,--output", words_.output, "The folder for the pictures (default: this one)")
        ->type_name("FOLDER");
    command
        .add_option("--learner-sentence", options_.learnerSentence,
                    "The sentence that a file NAME.learner.wav beside a recording answers; 2 by itself")
        ->check(NumberCheck())
        ->type_name("N");
  }

  CLI::Option& AddSentence(CLI::App& command) {
    return *command.add_option("--sentence", words_.sentence, "The sentence, from 1")
                ->check(NumberCheck())
                ->type_name("N");
  }

  void AddTake(CLI::App& command) {
    command.add_option("--take", words_.take, "The take of the sentence, from 1; the newest by itself")
        ->check(NumberCheck())
        ->type_name("K");
  }

  void AddDevice(CLI::App& command, const char* about) {
    command.add_option("--device", options_.device, about)->type_name("NAME");
  }

  void AddPlay() {
    CLI::App& command = AddCommand("play", "Play a sentence of a recording that was cut", RunPlay);
    AddFile(command);
    AddSentence(command).required();
    command.add_option("--repeat", options_.repeat, "How many times, 1 to 1000")
        ->check(Quietly(CLI::Range(1, 1000)))
        ->type_name("K");
    command.add_option("--gap", words_.gap, "The silence between two times, in seconds")
        ->check(TimeCheck())
        ->type_name("SECONDS");
    AddDevice(command, "A loudspeaker from tavimo devices");
  }

  void AddRecord() {
    CLI::App& command =
        AddCommand("record", "Record the learner after a sentence of a recording that was cut", RunRecord);
    command.footer(
        "\nEnter, q, Ctrl-C or silence ends a take. Every take is a file of its own: one that is continued stays, and\n"
        "the new one begins with its sound.");
    AddFile(command);
    AddSentence(command).required();
    command
        .add_option("--silence", words_.silence,
                    "The silence behind the learner's words that ends the take; 2 by itself, none with --seconds")
        ->check(TimeCheck())
        ->type_name("SECONDS");
    command.add_option("--seconds", words_.seconds, "The longest the take may be")
        ->check(TimeCheck())
        ->type_name("SECONDS");
    AddDevice(command, "A microphone from tavimo devices, or file:PATH, a wave file in its place");
    auto* append = command.add_flag("--append", options_.append, "Continue the newest take of the sentence");
    command.add_option("--at", words_.atMs, "Record over the newest take from that moment on")
        ->check(Quietly(CLI::Range(0, 2'000'000'000)))
        ->excludes(append)
        ->type_name("MS");
  }

  void AddTakes() {
    CLI::App& command = AddCommand("takes", "List, play or remove what the learner has recorded", RunTakes);
    command.add_option("ACTION", words_.takesAction, "list, play or rm")
        ->required()
        ->check(Quietly(CLI::IsMember({"list", "play", "rm"})))
        ->type_name("");
    AddFile(command);
    AddSentence(command);
    AddTake(command);
    AddDevice(command, "For play, a loudspeaker from tavimo devices");
  }

  void AddCompare() {
    CLI::App& command = AddCommand("compare", "Draw a sentence and a take of it under each other", RunCompare);
    AddFile(command);
    AddSentence(command).required();
    AddTake(command);
    AddDigestKind(command);
    command.add_option("-o,--output", words_.output, "The picture to write")->required()->type_name("PNG");
  }

  // What the commands around the learner's voice have been told; a complaint, or nothing.
  std::string FinishVoice() {
    if (words_.sentence > 0) options_.sentence = words_.sentence;
    if (words_.take > 0) options_.take = words_.take;
    if (words_.atMs >= 0) options_.atMs = words_.atMs;
    if (!words_.silence.empty()) options_.silenceLengthMs = ParseTime(words_.silence);
    if (!words_.seconds.empty()) options_.lengthMs = ParseTime(words_.seconds);
    if (!words_.gap.empty()) options_.gapMs = ParseTime(words_.gap).value();
    options_.device = WithAbsoluteFile(options_.device);
    options_.takesAction = ActionOf(words_.takesAction);
    if (options_.silenceLengthMs == 0 || options_.lengthMs == 0) return "--silence and --seconds must be above 0";
    if (options_.take && !options_.sentence) return "--take counts the takes of one sentence; name it with --sentence";
    if (options_.takesAction == TakesAction::Remove && !options_.take)
      return "rm removes one take: name it with --sentence and --take";
    return {};
  }

  ParsedCommandLine Finish() {
    options_.home = words_.home.empty() ? UserDataFolder() : Absolute(words_.home);
    if (options_.home.empty() && options_.command != RunInfo && options_.command != RunDevices)
      return Complain("no data folder is known; name one with --home");
    if (!words_.file.empty()) words_.files = {words_.file};
    for (const std::string& file : words_.files) options_.files.push_back(Absolute(file));
    options_.output = words_.output.empty() ? fs::current_path() : Absolute(words_.output);
    options_.digestKind = words_.exact ? DigestKind::Exact : DigestKind::Peak;
    options_.tableForm = words_.json ? TableForm::Json : TableForm::ForPeople;
    options_.style = StyleOf(words_.style);
    if (!words_.from.empty()) options_.fromMs = ParseTime(words_.from).value();
    if (!words_.to.empty()) options_.toMs = ParseTime(words_.to).value();
    if (options_.toMs && *options_.toMs <= options_.fromMs) return Complain("--to must lie behind --from");
    if (const std::string complaint = FinishVoice(); !complaint.empty()) return Complain(complaint);
    return {options_, kDone};
  }

  ParsedCommandLine Complain(const std::string& what) {
    const auto chosen = app_.get_subcommands();
    const std::string command = chosen.empty() ? "" : chosen.front()->get_name() + " ";
    std::cerr << "tavimo: " << ReadableText(what) << "\nSee tavimo " << command << "--help\n";
    return {{}, kUsage};
  }

  std::vector<std::string> CommandNames() const {
    std::vector<std::string> names;
    for (const CLI::App* command : app_.get_subcommands({})) names.push_back(command->get_name());
    return names;
  }

  std::string Commands() const {
    std::string list;
    for (const std::string& name : CommandNames()) list += (list.empty() ? "" : ", ") + name;
    return list;
  }

  static void AppendOptionNames(const CLI::App& app, std::vector<std::string>& names) {
    for (const CLI::Option* option : app.get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
      for (const std::string& name : option->get_snames()) names.push_back("-" + name);
    }
  }

  std::string UnknownWord() const {
    const std::string word = app_.remaining(true).front();
    const auto chosen = app_.get_subcommands();
    if (word.starts_with("-")) {
      std::vector<std::string> names;
      AppendOptionNames(chosen.empty() ? app_ : *chosen.front(), names);
      if (!chosen.empty()) AppendOptionNames(app_, names);
      return "unknown option '" + word + "'; did you mean " + NearestName(word.substr(0, word.find('=')), names) + "?";
    }
    if (!chosen.empty()) return "'" + word + "' is one file too many for " + chosen.front()->get_name();
    return "unknown command '" + word + "'; did you mean " + NearestName(word, CommandNames()) + "?";
  }

  CLI::App app_;
  Words words_;
  Options options_;
};

}  // namespace

ParsedCommandLine ParseCommandLine(int argc, char** argv) { return Grammar().Parse(argc, argv); }

}  // namespace tavimo::host
