// What there is to measure: the jobs, each with what it reads and how much it may cost.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "inputs.h"
#include "measurement.h"

namespace tavimo::bench {

enum class Growth {
  Proportional,  // its cost grows with its input, and --scale shows it
  None,          // one size alone makes sense
};

struct Job {
  const char* name;           // on the command line
  const char* what;           // in the table
  std::vector<Input> inputs;  // made before it runs
  Growth growth = Growth::None;
  double mostTimes = 0;                               // the budget, times the limit; 0: none
  double mostSeconds = 0;                             // of a whole run; 0: any
  double mostTailSeconds = 0;                         // of 999 of 1000 runs; 0: any
  double mostTimesSibling = 0;                        // times another way of the same job; 0: any
  std::function<Measurement(const Inputs&)> measure;  // throws std::runtime_error when an export refuses
};

[[nodiscard]] std::vector<Job> SoundJobs();
[[nodiscard]] std::vector<Job> CaptureJobs();
[[nodiscard]] std::vector<Job> PageJobs();
[[nodiscard]] std::vector<Job> QuestionJobs();
[[nodiscard]] std::vector<Job> StartJobs();

// What a job calls with the result of an export.
void Expect(bool holds, const char* what);

}  // namespace tavimo::bench
