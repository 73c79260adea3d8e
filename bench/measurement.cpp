// Implements measurement.h.
#include "measurement.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <fstream>
#include <string>
#include <string_view>

namespace tavimo::bench {

namespace {

constexpr int kFewestRounds = 5;
constexpr int kMostRounds = 61;
constexpr double kEnoughSeconds = 3;

// Keeps the times of the single repetitions, by the benchmark's place.
class RepetitionTimes final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      times[run.run_name.function_name == "job" ? 0 : 1].push_back(run.real_accumulated_time /
                                                                   static_cast<double>(run.iterations));
    }
  }
  std::array<std::vector<double>, 2> times;
};

void Register(const char* name, const Work& work) {
  benchmark::RegisterBenchmark(name, [&work](benchmark::State& state) {
    for ([[maybe_unused]] const auto iteration : state) work();
  });
}

// The fastest runs are those that the rest of the machine left alone.
Measurement WithTimes(Measurement result, const std::vector<double>& seconds, const std::vector<double>& limitSeconds) {
  result.limitSeconds = Median(limitSeconds);
  result.times = Quantile(seconds, 0) / Quantile(limitSeconds, 0);
  return result;
}

}  // namespace

std::int64_t StatusBytes(const std::string& process, std::string_view key) {
  std::ifstream status("/proc/" + process + "/status");
  for (std::string word; status >> word;) {
    std::int64_t kibibytes = 0;
    if (word == key && status >> kibibytes) return kibibytes * 1024;
  }
  return 0;
}

double SecondsOf(const Work& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double Quantile(std::vector<double> values, double share) {
  const auto place = values.begin() + static_cast<std::ptrdiff_t>(static_cast<double>(values.size()) * share);
  std::nth_element(values.begin(), place, values.end());
  return *place;
}

std::int64_t PeakBytesOf(const Work& work) {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << 5;  // the peak begins anew at what is resident now
  const std::int64_t before = StatusBytes("self", "VmRSS:");
  work();
  return std::max<std::int64_t>(StatusBytes("self", "VmHWM:") - before, 0);
}

Measurement MeasureBulk(const Contest& contest) {
  Measurement result;
  result.byteCount = contest.byteCount;
  const Work prepare = contest.prepare ? contest.prepare : [] {};
  prepare();
  result.peakBytes = PeakBytesOf(contest.job);
  std::vector<double> seconds;
  std::vector<double> limitSeconds;
  double spent = 0;
  for (int round = 0; round < kFewestRounds || (round < kMostRounds && spent < kEnoughSeconds); ++round) {
    if (contest.limit) {
      prepare();
      limitSeconds.push_back(SecondsOf(contest.limit));
      spent += limitSeconds.back();
    }
    prepare();
    seconds.push_back(SecondsOf(contest.job));
    spent += seconds.back();
  }
  result.seconds = Median(seconds);
  return contest.limit ? WithTimes(result, seconds, limitSeconds) : result;
}

Measurement MeasureSmall(const Contest& contest) {
  Measurement result;
  result.byteCount = contest.byteCount;
  result.peakBytes = PeakBytesOf(contest.job);
  std::array<char*, 4> arguments{const_cast<char*>("bench"), const_cast<char*>("--benchmark_repetitions=41"),
                                 const_cast<char*>("--benchmark_min_time=0.01"),
                                 const_cast<char*>("--benchmark_enable_random_interleaving=true")};
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  Register("job", contest.job);
  if (contest.limit) Register("limit", contest.limit);
  RepetitionTimes reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  const auto& [seconds, limitSeconds] = reporter.times;
  result.seconds = Median(seconds);
  return contest.limit ? WithTimes(result, seconds, limitSeconds) : result;
}

}  // namespace tavimo::bench
