// The words of the command line, one file for each family of commands; command_line.cpp puts them together. Only these
// files include CLI11, which takes longer to compile than the rest of the program.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "options.h"

namespace tavimo::host {

// What CLI11 fills before it is made into Options.
struct Words {
  std::string home;
  std::string file;
  std::vector<std::string> files;
  std::string output;
  std::string style = "half";
  std::string from;
  std::string to;
  std::string action;
  std::string silence;
  std::string seconds;
  std::string gap;
  std::string time;
  std::string encoding;
  std::string script;
  std::string recording;
  std::int64_t atMs = -1;
  std::int64_t sentenceCount = -1;
  int sentence = 0;
  int take = 0;
  int bookmark = 0;
  int sampleRate = 0;
  int channels = 0;
  bool exact = false;
  bool peak = false;
  bool json = false;
  bool tsv = false;
  bool replace = false;
  int page = 0;
  int occurrence = 0;
  std::string pageSize;
  std::string at;
};

struct Grammar {
  CLI::App app;
  Words words;
  Options options;

  CLI::App& AddCommand(const char* name, const char* about, int (*run)(const Options&));
  CLI::App& AddCommandTo(CLI::App& parent, const char* name, const char* about, int (*run)(const Options&));
  void AddFile(CLI::App& command, const char* about = "The recording");
  void AddFiles(CLI::App& command, const char* about = "The recordings");
  void AddDevice(CLI::App& command, const char* about);
  void AddEncoding(CLI::App& command);  // of a script
  void AddAction(CLI::App& command, const char* about, const std::vector<std::string>& actions);
  void AddDigestKind(CLI::App& command);
  void AddStretch(CLI::App& command);
  CLI::Option& AddSentence(CLI::App& command);
  CLI::Option& AddOutput(CLI::App& command, const char* about, const char* type);
};

// Makes a path independent of the current directory. A slash at the end says nothing.
[[nodiscard]] std::filesystem::path Absolute(const std::string& path);

// A check that does not describe itself in the help, where the option's own text does.
[[nodiscard]] CLI::Validator Quietly(CLI::Validator check);
[[nodiscard]] CLI::Validator TimeCheck();
[[nodiscard]] CLI::Validator NumberCheck();  // of sentences, takes, bookmarks

void AddLessonCommands(Grammar& grammar);
void AddVoiceCommands(Grammar& grammar);
void AddEditingCommands(Grammar& grammar);
void AddHostCommands(Grammar& grammar);
void AddExerciseCommands(Grammar& grammar);
void AddPageCommands(Grammar& grammar);

// What the commands of a family have been told, as options. A complaint, or nothing.
[[nodiscard]] std::string FinishLesson(Grammar& grammar);
[[nodiscard]] std::string FinishVoice(Grammar& grammar);
[[nodiscard]] std::string FinishEditing(Grammar& grammar);
[[nodiscard]] std::string FinishHost(Grammar& grammar);
[[nodiscard]] std::string FinishExercises(Grammar& grammar);
[[nodiscard]] std::string FinishPages(Grammar& grammar);

}  // namespace tavimo::host
