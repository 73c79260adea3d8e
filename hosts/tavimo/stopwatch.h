// The stages of a command on standard error, each with its time and the time since the program began (--timing). The
// time that the system takes to load the program comes before and is not counted.
#pragma once

#include <chrono>

namespace tavimo::host {

class Stopwatch {
 public:
  enum class Printing { Off, On };

  explicit Stopwatch(Printing printing);

  // Ends a stage, which began where the one before ended.
  void End(const char* stage);

 private:
  using Clock = std::chrono::steady_clock;

  Printing printing_;
  Clock::time_point stageBegin_;
};

}  // namespace tavimo::host
