#include "stopwatch.h"

#include <cstdio>

namespace tavimo::host {

namespace {

const auto programBegin = std::chrono::steady_clock::now();

double Milliseconds(std::chrono::steady_clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

}  // namespace

Stopwatch::Stopwatch(Printing printing) : printing_(printing), stageBegin_(programBegin) {
  if (printing_ == Printing::On) std::fprintf(stderr, "%-10s %9s %9s\n", "stage", "ms", "in all");
}

void Stopwatch::End(const char* stage) {
  const Clock::time_point now = Clock::now();
  if (printing_ == Printing::On) {
    std::fprintf(stderr, "%-10s %9.1f %9.1f\n", stage, Milliseconds(now - stageBegin_),
                 Milliseconds(now - programBegin));
  }
  stageBegin_ = now;
}

}  // namespace tavimo::host
