// Programs and libraries as they start: the engine loaded, the program's version, a lesson of an hour opened. Each run is a
// process; what starting one costs is told apart.
#include <stdio.h>

#include <cstdlib>
#include <memory>
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

Measurement MeasureVersion(const Inputs&) {
  const std::string command = Quoted(BENCH_PROGRAM) + " --version >/dev/null";
  return MeasureBulk({[=] { Expect(std::system(command.c_str()) == 0, "tavimo --version"); }, {}, 0, {}});
}

// The program's own stopwatch, from its first statement to the first picture: digest, cut, study file, picture. A lesson
// that was never opened before each time.
Measurement MeasureLesson(const Inputs& inputs) {
  constexpr int kRounds = 7;
  const std::string folder = Quoted(inputs.Folder().string());
  const std::string recording = Quoted((inputs.Folder() / kHour).string());
  const std::string command = "rm -rf home && " + Quoted(BENCH_PROGRAM) + " --home home lesson --timing --output " +
                              folder + " " + recording + " 2>&1 >/dev/null | awk '$1 == \"picture\" {print $NF}'";
  std::vector<double> seconds;
  for (int i = 0; i < kRounds; ++i) {
    const std::string milliseconds = OutputOf(command);
    Expect(!milliseconds.empty(), "tavimo lesson --timing");
    seconds.push_back(std::strtod(milliseconds.c_str(), nullptr) * 1e-3);
  }
  Measurement result;
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
