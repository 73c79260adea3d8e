// Puts the families of commands together, and says what was probably meant where the words make no sense.
#include "command_line.h"

#include <algorithm>
#include <iostream>

#include "grammar.h"
#include "lesson_files.h"
#include "nearest_name.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kAbout =
    "tavimo takes a language lesson apart: it finds the sentences of a recording, stores and draws them, plays them,\n"
    "and records the learner who says them. tavimo lesson does it all and ends in a page for the browser.\n"
    "Recordings are PCM wave files of 8 or 16 bits, mono or stereo; tavimo import makes them of MP3, Ogg, FLAC and\n"
    "other kinds, and tavimo lesson does so by itself.";

constexpr const char* kFooterStart =
    "\nEverything about a recording is kept in a folder of its own, HOME/lessons/NAME-HASH: its digest in temp, its\n"
    "study file in zud, the learner's voice in takes. The hash is that of the recording's full path, so recordings of\n"
    "one name in different folders keep apart, and one that is moved starts anew. A recording whose name the engine\n"
    "cannot take is reached by a link in alias. HOME is the person's data folder (";

constexpr const char* kFooterEnd =
    ") unless\n"
    "--home names another.\n"
    "\nExit codes: 0 done, 1 refused (the reason is on standard error), 2 wrong usage.";

class CommandLine {
 public:
  CommandLine() : grammar_{CLI::App(kAbout, "tavimo"), {}, {}} {
    CLI::App& app = grammar_.app;
    app.allow_windows_style_options(false);  // one grammar on every system, and a path may begin with a slash
    app.require_subcommand(0, 1);            // a missing one is told apart from a misspelled one below
    app.fallthrough();
    app.set_version_flag("--version", "tavimo " TAVIMO_VERSION);
    app.add_option("--home", grammar_.words.home, "The folder for everything that is kept")->type_name("DIR");
    AddLessonCommands(grammar_);
    AddEditingCommands(grammar_);
    AddVoiceCommands(grammar_);
    AddHostCommands(grammar_);
    AddExerciseCommands(grammar_);
    AddPageCommands(grammar_);
    app.footer(std::string(kFooterStart)
                   .append(kUserDataFolder)
                   .append(kFooterEnd));  // last, or every command's help would repeat it
  }

  ParsedCommandLine Parse(std::vector<std::string> words) {
    CLI::App& app = grammar_.app;
    std::reverse(words.begin(), words.end());  // the parser takes them from the end
    try {
      app.parse(std::move(words));
    } catch (const CLI::Success& helpOrVersion) {
      app.exit(helpOrVersion);
      return {};
    } catch (const CLI::ParseError& error) {
      // A word that nothing knows explains whatever else seems to be missing.
      return Complain(app.remaining_size(true) == 0 ? error.what() : UnknownWord());
    }
    const std::vector<std::string> commands = CommandNames(Innermost());
    return commands.empty() ? Finish() : Complain("say what to do: " + Listed(commands));
  }

 private:
  ParsedCommandLine Finish() {
    Words& words = grammar_.words;
    Options& options = grammar_.options;
    options.home = words.home.empty() ? UserDataFolder() : Absolute(words.home);
    const bool isHomeless = options.command == RunInfo || options.command == RunDevices ||
                            options.command == RunImport || options.command == RunCall;
    if (options.home.empty() && !isHomeless) return Complain("no data folder is known; name one with --home");
    if (!words.file.empty()) words.files = {words.file};
    for (const std::string& file : words.files) options.files.push_back(NamedRecording(Absolute(file)));
    options.hasOutput = !words.output.empty();
    options.output = words.output.empty() ? fs::current_path() : Absolute(words.output);
    for (const auto& finish : {FinishLesson, FinishVoice, FinishEditing, FinishHost, FinishExercises, FinishPages}) {
      if (const std::string complaint = finish(grammar_); !complaint.empty()) return Complain(complaint);
    }
    return {options, kDone};
  }

  // The chosen command, the innermost one last.
  std::vector<const CLI::App*> Chosen() const {
    std::vector<const CLI::App*> chosen;
    for (auto inner = grammar_.app.get_subcommands(); !inner.empty(); inner = inner.front()->get_subcommands()) {
      chosen.push_back(inner.front());
    }
    return chosen;
  }

  const CLI::App& Innermost() const {
    const auto chosen = Chosen();
    return chosen.empty() ? grammar_.app : *chosen.back();
  }

  ParsedCommandLine Complain(const std::string& what) {
    std::string command;
    for (const CLI::App* chosen : Chosen()) command += chosen->get_name() + " ";
    std::cerr << "tavimo: " << ReadableText(what) << "\nSee tavimo " << command << "--help\n";
    return {{}, kUsage};
  }

  static std::vector<std::string> CommandNames(const CLI::App& parent) {
    std::vector<std::string> names;
    for (const CLI::App* command : parent.get_subcommands({})) names.push_back(command->get_name());
    return names;
  }

  static std::string Listed(const std::vector<std::string>& names) {
    std::string list;
    for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
    return list;
  }

  static void AppendOptionNames(const CLI::App& app, std::vector<std::string>& names) {
    for (const CLI::Option* option : app.get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
      for (const std::string& name : option->get_snames()) names.push_back("-" + name);
    }
  }

  std::string UnknownWord() const {
    const std::string word = grammar_.app.remaining(true).front();
    const CLI::App& innermost = Innermost();
    if (word.starts_with("-")) {
      std::vector<std::string> names;
      AppendOptionNames(innermost, names);
      if (&innermost != &grammar_.app) AppendOptionNames(grammar_.app, names);
      return "unknown option '" + word + "'; did you mean " + NearestName(word.substr(0, word.find('=')), names) + "?";
    }
    const std::vector<std::string> commands = CommandNames(innermost);
    if (commands.empty()) return "'" + word + "' is one file too many for " + innermost.get_name();
    return "unknown command '" + word + "'; did you mean " + NearestName(word, commands) + "?";
  }

  Grammar grammar_;
};

}  // namespace

ParsedCommandLine ParseCommandLine(std::vector<std::string> words) { return CommandLine().Parse(std::move(words)); }

}  // namespace tavimo::host
