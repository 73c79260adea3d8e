// The counter behind a fault plan. What a fault looks like is the back end's.
#include "platform/file_faults.h"

namespace tavimo::platform {

namespace {

// Atomic because a worker's operations count too.
std::atomic<std::int64_t> operationsMade{0};
std::atomic<std::int64_t> failingOperation{0};
std::atomic<FileFault> plannedFault{FileFault::None};
std::atomic<FaultExtent> plannedExtent{FaultExtent::OneOperation};

}  // namespace

FaultPlan::FaultPlan(std::int64_t operation, FileFault fault, FaultExtent extent) noexcept {
  operationsMade = 0;
  failingOperation = operation;
  plannedFault = fault;
  plannedExtent = extent;
  faults::isPlanned = true;
}

FaultPlan::~FaultPlan() { faults::isPlanned = false; }

std::int64_t FaultPlan::OperationsMade() const noexcept { return operationsMade; }

FileFault faults::CountOperation() noexcept {
  const std::int64_t operation = ++operationsMade;
  const bool isReached = plannedExtent == FaultExtent::AllFromThere ? operation >= failingOperation.load()
                                                                    : operation == failingOperation.load();
  return isReached ? plannedFault.load() : FileFault::None;
}

}  // namespace tavimo::platform
