// Implements report.h.
#include "report.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <string_view>

namespace tavimo::bench {

namespace {

constexpr double kMostPeakBytes = 16.0 * 1024 * 1024;
constexpr double kMebibyte = 1024.0 * 1024;

std::string Number(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string Time(double seconds) {
  if (seconds >= 1e-1) return Number("%.3f s", seconds);
  if (seconds >= 1e-3) return Number("%.2f ms", seconds * 1e3);
  return Number("%.2f us", seconds * 1e6);
}

// Between quotation marks; what a library has to say of a failure may hold any character.
std::string JsonText(std::string_view text) {
  std::string quoted = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') quoted += '\\';
    quoted += static_cast<unsigned char>(character) < ' ' ? ' ' : character;
  }
  return quoted + '"';
}

double MegabytesPerSecond(const Measurement& measured) {
  return static_cast<double>(measured.byteCount) / measured.seconds * 1e-6;
}

// What stands behind the times the limit: the budget, and what else was asked for.
std::string Terms(const Job& job, const Measurement& measured) {
  std::string terms;
  const auto add = [&](const std::string& term) { terms += (terms.empty() ? "" : "; ") + term; };
  if (job.mostTimes > 0) add("at most " + Number("%.2f", job.mostTimes));
  if (job.mostSeconds > 0) add("at most " + Time(job.mostSeconds));
  if (job.mostTailSeconds > 0) {
    add("999 of 1000 within " + Time(measured.tailSeconds) + ", at most " + Time(job.mostTailSeconds));
  }
  if (job.mostTimesSibling > 0) {
    add(Number("%.2f", measured.slowerThanSibling) + " x the short silence, at most " +
        Number("%.2f", job.mostTimesSibling));
  }
  return terms;
}

void PrintLine(const Job& job, const Measurement& measured, bool isWithin) {
  const std::string speed = measured.byteCount > 0 ? Number("%.0f MB/s", MegabytesPerSecond(measured)) : "";
  const std::string times = measured.times > 0 ? Number("%.2f x", measured.times) : "";
  const std::string memory =
      measured.peakBytes == kNotMeasured ? "" : Number("%.1f MiB", static_cast<double>(measured.peakBytes) / kMebibyte);
  std::printf("%-22s %-46s %9s %11s %7s %10s  %-10s %s\n", job.name, job.what, Time(measured.seconds).c_str(),
              speed.c_str(), times.c_str(), memory.c_str(), isWithin ? "within" : "NOT WITHIN",
              Terms(job, measured).c_str());
}

void PrintJson(const Job& job, const Measurement& measured, double share, bool isWithin) {
  std::printf(
      "  {\"job\": \"%s\", \"what\": \"%s\", \"inputs\": %g, \"seconds\": %.9g, \"limitSeconds\": %.9g, \"bytes\": "
      "%lld, "
      "\"timesLimit\": %.4g, \"mostTimesLimit\": %g, \"timesSibling\": %.4g, \"mostTimesSibling\": %g, "
      "\"mostSeconds\": %g, \"tailSeconds\": %.9g, "
      "\"mostTailSeconds\": %g, \"peakBytes\": %lld, \"within\": %s}",
      job.name, job.what, share, measured.seconds, measured.limitSeconds, static_cast<long long>(measured.byteCount),
      measured.times, job.mostTimes, measured.slowerThanSibling, job.mostTimesSibling, job.mostSeconds,
      measured.tailSeconds, job.mostTailSeconds, static_cast<long long>(measured.peakBytes),
      isWithin ? "true" : "false");
}

}  // namespace

double ShareOfBudget(const Job& job, const Measurement& measured) {
  double share = static_cast<double>(std::max<std::int64_t>(measured.peakBytes, 0)) / kMostPeakBytes;
  const auto hold = [&](double value, double most) {
    if (most > 0) share = std::max(share, value / most);
  };
  hold(measured.times, job.mostTimes);
  hold(measured.seconds, job.mostSeconds);
  hold(measured.tailSeconds, job.mostTailSeconds);
  hold(measured.slowerThanSibling, job.mostTimesSibling);
  return share;
}

void Report::Begin() const {
  if (format_ == Format::Json) return static_cast<void>(std::printf("[\n"));
  if (share_ != 1) std::printf("Inputs of %g times the size that is named.\n", share_);
  std::printf("%-22s %-46s %9s %11s %7s %10s\n", "job", "what was done", "time", "speed", "limit", "memory");
}

void Report::Add(const Outcome& outcome) {
  if (format_ == Format::Json && jobs_ > 0) std::printf(",\n");
  ++jobs_;
  if (!outcome.failure.empty()) {
    worst_ = std::numeric_limits<double>::infinity();
    if (format_ == Format::Json) {
      std::printf("  {\"job\": \"%s\", \"failure\": %s}", outcome.job->name, JsonText(outcome.failure).c_str());
    } else {
      std::printf("%-22s FAILED: %s\n", outcome.job->name, outcome.failure.c_str());
    }
    return;
  }
  const double share = ShareOfBudget(*outcome.job, outcome.measured);
  worst_ = std::max(worst_, share);
  if (share <= 1) ++within_;
  if (format_ == Format::Json) {
    PrintJson(*outcome.job, outcome.measured, share_, share <= 1);
  } else {
    PrintLine(*outcome.job, outcome.measured, share <= 1);
  }
  std::fflush(stdout);
}

void Report::End() const {
  if (format_ == Format::Json) return static_cast<void>(std::printf("\n]\n"));
  std::printf("%d of %d jobs within budget\n", within_, jobs_);
}

bool PrintGrowth(const Job& job, const std::vector<Outcome>& sizes) {
  constexpr double kMostGrowth = 1.2;
  std::printf("%-22s", job.name);
  for (const Outcome& outcome : sizes) {
    if (!outcome.failure.empty()) {
      std::printf(" FAILED: %s\n", outcome.failure.c_str());
      return false;
    }
    const Measurement& measured = outcome.measured;
    std::printf("  %9s %6.3f ns/B %5.2f x", Time(measured.seconds).c_str(),
                measured.seconds / static_cast<double>(measured.byteCount) * 1e9, measured.times);
  }
  const Measurement& small = sizes.front().measured;
  const Measurement& large = sizes.back().measured;
  const double inputGrowth = static_cast<double>(large.byteCount) / static_cast<double>(small.byteCount);
  const double perByte = large.seconds / small.seconds / inputGrowth;
  const double besideLimit = large.times / small.times;
  const bool isWithin = std::min(perByte, besideLimit) <= kMostGrowth;
  std::printf("  %5.2f a byte, %5.2f beside the limit  %s\n", perByte, besideLimit, isWithin ? "within" : "NOT WITHIN");
  std::fflush(stdout);
  return isWithin;
}

}  // namespace tavimo::bench
