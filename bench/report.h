// A line for each job, and how many are within budget; for people or, as JSON, for machines.
#pragma once

#include <string>
#include <vector>

#include "job.h"

namespace tavimo::bench {

struct Outcome {
  const Job* job = nullptr;
  Measurement measured;
  std::string failure;  // why there is no measurement; empty: there is one
};

enum class Format { Table, Json };

class Report {
 public:
  // share: of the inputs' full size, which the descriptions of the jobs name.
  Report(Format format, double share) : format_(format), share_(share) {}
  void Begin() const;
  void Add(const Outcome& outcome);
  void End() const;

  // How many times the budget the worst job took; a job that failed counts as endless.
  [[nodiscard]] double Worst() const { return worst_; }

 private:
  Format format_;
  double share_;
  int jobs_ = 0;
  int within_ = 0;
  double worst_ = 0;
};

// The job's cost as a share of its budget, the worst of all that it has; above 1: not within.
[[nodiscard]] double ShareOfBudget(const Job& job, const Measurement& measured);

// Costs at 1, 10 and 100 times a small size: the time, per byte, and beside the limit, whose own cost per byte grows as
// the input leaves the processor's caches. True when the largest costs at most 1.2 times as much as the smallest, per
// byte or beside its limit.
[[nodiscard]] bool PrintGrowth(const Job& job, const std::vector<Outcome>& sizes);

}  // namespace tavimo::bench
