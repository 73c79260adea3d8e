// What a person asked this program to do, and the commands that do it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "digest_maker.h"
#include "page_setup.h"
#include "wave_picture.h"

namespace tavimo::host {

// What the program answers to whoever started it.
enum ExitCode : int { kDone = 0, kRefused = 1, kUsage = 2 };

enum class TableForm { ForPeople, Json };
enum class TakesAction { List, Play, Remove };
enum class BookmarksAction { List, Add, Remove, Clear };

enum class WordsForm { Table, TabSeparated, Json };

struct Options {
  int (*command)(const Options&) = nullptr;
  std::filesystem::path home;  // absolute, as are the following
  std::vector<std::filesystem::path> files;
  std::filesystem::path output;  // the file to write, the pictures' folder of lesson; without one the current folder
  bool hasOutput = false;
  DigestKind digestKind = DigestKind::Peak;
  std::optional<int> threshold;
  std::optional<int> silenceMs;
  TableForm tableForm = TableForm::ForPeople;
  WaveStyle style = WaveStyle::Half;
  std::int64_t fromMs = 0;
  std::optional<std::int64_t> toMs;
  int width = 1200;
  int height = 240;
  std::optional<int> sentence;  // numbers of sentences and takes count from 1
  std::optional<int> take;
  TakesAction takesAction = TakesAction::List;
  std::string device;  // a wave file's path in it is absolute; empty: the system's choice
  std::optional<std::int64_t> atMs;
  std::optional<std::int64_t> silenceLengthMs;  // that ends a take
  std::optional<std::int64_t> lengthMs;         // of a take, at most
  int repeat = 1;
  std::int64_t gapMs = 0;
  int learnerSentence = 2;
  BookmarksAction bookmarksAction = BookmarksAction::List;
  std::optional<int> bookmark;  // from 1
  std::optional<std::int64_t> timeMs;
  std::string label;           // UTF-8
  std::vector<int> sentences;  // to delete
  std::optional<int> sampleRate;
  std::optional<int> channels;
  std::vector<std::string> calls;                  // of the engine: names, arguments, and "+" between them
  std::optional<std::string> encoding;             // of a script, one of EncodingNames
  std::optional<std::filesystem::path> script;     // of the questions, where it does not lie beside the recording
  std::optional<std::filesystem::path> recording;  // whose sentences a script must fit
  std::optional<std::size_t> sentenceCount;        // or how many of them
  PageSetup pageSetup;
  std::string word;               // UTF-8
  std::optional<int> page;        // of a script, from 1
  std::optional<int> occurrence;  // of the word, from 1
  std::optional<PagePoint> at;
  WordsForm wordsForm = WordsForm::Table;
  bool append = false;
  bool force = false;
  bool isTraced = false;
  bool isTimed = false;
  bool isSilent = false;
  bool onlyWrong = false;
};

int RunInfo(const Options& options);
int RunDigest(const Options& options);
int RunCut(const Options& options);
int RunWave(const Options& options);
int RunLesson(const Options& options);
int RunDevices(const Options& options);
int RunPlay(const Options& options);
int RunRecord(const Options& options);
int RunTakes(const Options& options);
int RunCompare(const Options& options);
int RunRecover(const Options& options);
int RunImport(const Options& options);
int RunBookmarks(const Options& options);
int RunExtract(const Options& options);
int RunMono(const Options& options);
int RunDelete(const Options& options);
int RunUndo(const Options& options);
int RunCall(const Options& options);
int RunQuestionsLint(const Options& options);
int RunQuestionsCompile(const Options& options);
int RunQuestionsList(const Options& options);
int RunQuestionsShow(const Options& options);
int RunQuestionsQuiz(const Options& options);
int RunPagesBuild(const Options& options);
int RunPagesShow(const Options& options);
int RunPagesMark(const Options& options);
int RunPagesWords(const Options& options);

}  // namespace tavimo::host
