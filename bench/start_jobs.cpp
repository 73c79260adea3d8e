// Programs and libraries as they start: the engine loaded, the program's version, a lesson of an hour opened. Each run
// is a process; what starting one costs is told apart.
#include <fcntl.h>
#include <spawn.h>
#include <stdio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "job.h"

namespace tavimo::bench {

namespace {

// What a command writes to its standard output.
std::string OutputOf(const std::string& command) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
  Expect(pipe != nullptr, command.c_str());
  std::string output;
  for (int byte = 0; (byte = std::fgetc(pipe.get())) != EOF;) output += static_cast<char>(byte);
  return output;
}

std::string Quoted(const std::string& path) { return "'" + path + "'"; }

double SecondsToLoad(const char* library) {
  const std::string nanoseconds =
      OutputOf(Quoted(BENCH_LOAD_PROBE) + " " + Quoted(library) + " vcGetRecordBufLenInTime");
  Expect(!nanoseconds.empty(), library);
  return std::strtod(nanoseconds.c_str(), nullptr) * 1e-9;
}

Measurement MeasureLoad(const Inputs&) {
  constexpr int kRounds = 41;
  std::vector<double> seconds;
  std::vector<double> limitSeconds;
  std::vector<double> times;
  for (int i = 0; i < kRounds; ++i) {
    limitSeconds.push_back(SecondsToLoad(BENCH_EMPTY_LIBRARY));
    seconds.push_back(SecondsToLoad(BENCH_ENGINE));
    times.push_back(seconds.back() / limitSeconds.back());
  }
  Measurement result;
  result.seconds = Median(seconds);
  result.limitSeconds = Median(limitSeconds);
  result.times = Median(times);
  return result;
}

// Starts the program with its standard output thrown away and its standard error going to a descriptor.
pid_t StartProgram(const std::vector<const char*>& arguments, int standardError) {
  std::vector<char*> words{const_cast<char*>("tavimo")};
  for (const char* argument : arguments) words.push_back(const_cast<char*>(argument));
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, standardError, STDERR_FILENO);
  pid_t child = -1;
  Expect(posix_spawn(&child, BENCH_PROGRAM, &actions, nullptr, words.data(), environ) == 0, BENCH_PROGRAM);
  posix_spawn_file_actions_destroy(&actions);
  return child;
}

Measurement MeasureVersion(const Inputs&) {
  const auto run = [] {
    int status = 1;
    Expect(waitpid(StartProgram({"--version"}, STDERR_FILENO), &status, 0) > 0 && status == 0, "tavimo --version");
  };
  Measurement result = MeasureBulk({run, {}, 0, {}});
  result.peakBytes = kNotMeasured;  // it would be this process's
  return result;
}

// The last word of the line that begins with a word; empty without one.
std::string LastWordOfLine(FILE* lines, const std::string& firstWord) {
  char* line = nullptr;
  std::size_t room = 0;
  std::string last;
  while (last.empty() && getline(&line, &room, lines) > 0) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (word != firstWord) continue;
    while (words >> word) last = word;
  }
  std::free(line);
  return last;
}

// By the program's own stopwatch, to its first picture; what it does with the lesson after that is cut short.
struct LessonStart {
  double seconds = 0;
  std::int64_t peakBytes = 0;  // of the whole program
};

LessonStart StartLesson(const std::string& recording) {
  std::filesystem::remove_all("home");
  int ends[2];
  Expect(pipe(ends) == 0, "pipe");
  const pid_t child = StartProgram({"--home", "home", "lesson", "--timing", recording.c_str()}, ends[1]);
  close(ends[1]);
  const std::unique_ptr<FILE, int (*)(FILE*)> lines(fdopen(ends[0], "r"), fclose);
  const std::string milliseconds = LastWordOfLine(lines.get(), "picture");
  const std::int64_t peakBytes = StatusBytes(std::to_string(child), "VmHWM:");
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  Expect(!milliseconds.empty(), "tavimo lesson --timing");
  return {std::strtod(milliseconds.c_str(), nullptr) * 1e-3, peakBytes};
}

// Digest, cut, study file and picture of a recording that was never opened before.
Measurement MeasureLesson(const Inputs& inputs) {
  constexpr int kRounds = 9;
  std::vector<double> seconds;
  Measurement result;
  for (int i = 0; i < kRounds; ++i) {
    const LessonStart start = StartLesson((inputs.Folder() / kHour).string());
    seconds.push_back(start.seconds);
    result.peakBytes = std::max(result.peakBytes, start.peakBytes);
  }
  result.seconds = Median(seconds);
  return result;
}

}  // namespace

std::vector<Job> StartJobs() {
  return {
      {.name = "load",
       .what = "the library loaded, the first export called",
       .inputs = {},
       .mostTimes = 1.5,
       .measure = MeasureLoad},
      {.name = "version", .what = "tavimo --version", .inputs = {}, .mostSeconds = 0.010, .measure = MeasureVersion},
      {.name = "lesson",
       .what = "an hour's lesson opened, to its first picture",
       .inputs = {Input::Hour},
       .mostSeconds = 0.150,
       .measure = MeasureLesson}};
}

}  // namespace tavimo::bench
