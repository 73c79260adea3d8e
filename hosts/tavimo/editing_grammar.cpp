// The words of bookmarks, delete, undo, extract, mono and import: what changes a recording or makes another one.
#include "grammar.h"
#include "importer.h"
#include "text.h"

namespace tavimo::host {

namespace {

BookmarksAction ActionOf(const std::string& word) {
  if (word == "add") return BookmarksAction::Add;
  if (word == "rm") return BookmarksAction::Remove;
  return word == "clear" ? BookmarksAction::Clear : BookmarksAction::List;
}

void AddBookmarks(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand("bookmarks", "List, add or remove places to come back to", RunBookmarks);
  grammar.AddAction(command, "list, add, rm or clear", {"list", "add", "rm", "clear"});
  grammar.AddFile(command);
  auto* time = command.add_option("--time", grammar.words.time, "For add, the place: 12.5 or 1:02.5")
                   ->check(TimeCheck())
                   ->type_name("TIME");
  grammar.AddSentence(command).description("For add, the start of that sentence")->excludes(time);
  command.add_option("--label", grammar.options.label, "For add, a name; the first 11 bytes of it in GBK are kept")
      ->type_name("TEXT");
  command.add_option("--number", grammar.words.bookmark, "For rm, the bookmark, from 1")
      ->check(NumberCheck())
      ->type_name("K");
}

void AddForce(Grammar& grammar, CLI::App& command, const char* about) {
  command.add_flag("--force", grammar.options.force, about);
}

constexpr const char* kReplace = "Replace a file that is there already";

void AddDelete(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand("delete", "Cut sentences out of a recording, with a backup first", RunDelete);
  command.footer(
      "\nThe recording itself changes; a dated backup of it, of its study file and its takes is kept, and tavimo undo\n"
      "brings it back. Bookmarks and takes of the other sentences stay with them.");
  grammar.AddFile(command);
  command.add_option("--sentence", grammar.options.sentences, "The sentences, from 1: --sentence 2 --sentence 5")
      ->required()
      ->check(NumberCheck())
      ->type_name("N")
      ->delimiter(',')
      ->expected(1, 100'000);
}

void AddUndo(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand("undo", "Take back the newest tavimo delete", RunUndo);
  grammar.AddFile(command);
  AddForce(grammar, command, "Even where the recording, its sentences or bookmarks were changed after that");
}

void AddExtract(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand("extract", "Copy a part of a recording into a wave file", RunExtract);
  grammar.AddFile(command);
  grammar.AddStretch(command);
  auto* from = command.get_option("--from");
  grammar.AddSentence(command).excludes(from)->excludes(command.get_option("--to"));
  grammar.AddOutput(command, "The wave file to write", "WAV").required();
  AddForce(grammar, command, kReplace);
}

void AddMono(Grammar& grammar) {
  CLI::App& command = grammar.AddCommand("mono", "Copy the first channel of a recording into a wave file", RunMono);
  grammar.AddFile(command);
  grammar.AddOutput(command, "The wave file to write", "WAV").required();
  AddForce(grammar, command, kReplace);
}

void AddImport(Grammar& grammar) {
  CLI::App& command =
      grammar.AddCommand("import", "Make a recording of MP3, Ogg, FLAC, or a wave file of another kind", RunImport);
  command.footer(
      "\nThe recording has 16 bits and is written beside FILE as NAME.wav; FILE itself is only read. More than two\n"
      "channels are mixed to one.");
  grammar.AddFile(command, "The sound");
  grammar.AddOutput(command, "The recording to write", "WAV");
  command.add_option("--rate", grammar.words.sampleRate, "Samples a second, 8000 to 48000; the source's by itself")
      ->check(Quietly(CLI::Range(kLowestImportRate, kHighestImportRate)))
      ->type_name("HZ");
  command.add_option("--channels", grammar.words.channels, "1 or 2; the source's by itself")
      ->check(Quietly(CLI::Range(1, 2)))
      ->type_name("N");
  AddForce(grammar, command, kReplace);
}

}  // namespace

void AddEditingCommands(Grammar& grammar) {
  AddImport(grammar);
  AddBookmarks(grammar);
  AddExtract(grammar);
  AddMono(grammar);
  AddDelete(grammar);
  AddUndo(grammar);
}

std::string FinishEditing(Grammar& grammar) {
  const Words& words = grammar.words;
  Options& options = grammar.options;
  options.bookmarksAction = ActionOf(words.action);
  if (!words.time.empty()) options.timeMs = ParseTime(words.time);
  if (words.bookmark > 0) options.bookmark = words.bookmark;
  if (words.sampleRate > 0) options.sampleRate = words.sampleRate;
  if (words.channels > 0) options.channels = words.channels;
  if (options.command == RunExtract && !options.sentence && words.from.empty() && words.to.empty()) {
    return "say what to extract: --sentence, or --from and --to";
  }
  if (options.command != RunBookmarks) return {};
  if (options.bookmarksAction == BookmarksAction::Add && !options.timeMs && !options.sentence) {
    return "say where the bookmark stands: --time or --sentence";
  }
  if (options.bookmarksAction == BookmarksAction::Remove && !options.bookmark) {
    return "rm removes one bookmark: name it with --number";
  }
  return {};
}

}  // namespace tavimo::host
