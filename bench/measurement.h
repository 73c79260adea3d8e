// Stopwatch, medians and peak memory: how a job is measured against its limit, the same bytes moved with next to no
// work. Both take turns in one process, so that a busy machine slows both. What the jobs are is not known here.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tavimo::bench {

using Work = std::function<void()>;

inline constexpr std::int64_t kNotMeasured = -1;

struct Measurement {
  double seconds = 0;            // median of the runs
  double limitSeconds = 0;       // the same of the limit; 0: the job has none
  double times = 0;              // the fastest run over the limit's fastest; 0 without a limit
  double tailSeconds = 0;        // what 999 of 1000 runs stay within; 0: not asked for
  double slowerThanSibling = 0;  // times another way of the same job; 0: not asked for
  std::int64_t byteCount = 0;    // that one run goes through
  // Resident memory beyond what the process had before its first run; -1: not measured.
  std::int64_t peakBytes = kNotMeasured;
};

// A job and its limit. prepare comes before each run of either and is not measured; prepare and limit may be empty.
struct Contest {
  Work job;
  Work limit;
  std::int64_t byteCount = 0;
  Work prepare;
};

// For work of a millisecond and more: job and limit by turns, five rounds at least.
[[nodiscard]] Measurement MeasureBulk(const Contest& contest);

// For work of microseconds: through Google Benchmark, repetitions of both in random order. prepare is not used. Once in
// a process.
[[nodiscard]] Measurement MeasureSmall(const Contest& contest);

// The most resident memory while work runs, beyond what there was before.
[[nodiscard]] std::int64_t PeakBytesOf(const Work& work);

// A line of a process's status in bytes, by the process's number or "self"; 0 without one.
[[nodiscard]] std::int64_t StatusBytes(const std::string& process, std::string_view key);

[[nodiscard]] double SecondsOf(const Work& work);

// REQUIRES: values is not empty; 0 <= share < 1.
[[nodiscard]] double Quantile(std::vector<double> values, double share);
[[nodiscard]] inline double Median(const std::vector<double>& values) { return Quantile(values, 0.5); }

}  // namespace tavimo::bench
