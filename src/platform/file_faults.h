// Files that fail on purpose: tests let the N-th file operation of the process fail and look at what is left. Nothing
// else turns it on; while it is off it costs one relaxed atomic load an operation.
//
// An operation is one opening, reading, writing, flushing, closing, renaming, removing or time setting that a back end of
// files.h makes. Tests may count them first, so that a loop over N proves that nothing is lost wherever the fault falls.
#pragma once

#include <atomic>
#include <cstdint>

namespace tavimo::platform {

// What a back end does with the operation at hand.
enum class FileFault {
  None,
  Fails,      // fails; a write moves half of its bytes before, as when a disk fills up
  EndsEarly,  // a read moves half of its bytes as if the file ended there; everything else fails
};

enum class FaultExtent {
  OneOperation,
  AllFromThere,  // that operation and every later one, as for a process that is killed there
};

// A plan holds while the object lives; one at a time.
class FaultPlan {
 public:
  // Counts operations and lets none fail.
  [[nodiscard]] static FaultPlan Watch() noexcept { return FaultPlan(0, FileFault::None, FaultExtent::OneOperation); }

  // Lets operation N fail, counted from 1 for the first that follows.
  [[nodiscard]] static FaultPlan FailAt(std::int64_t operation, FileFault fault = FileFault::Fails,
                                        FaultExtent extent = FaultExtent::OneOperation) noexcept {
    return FaultPlan(operation, fault, extent);
  }

  FaultPlan(const FaultPlan&) = delete;
  FaultPlan& operator=(const FaultPlan&) = delete;
  ~FaultPlan();

  [[nodiscard]] std::int64_t OperationsMade() const noexcept;

 private:
  FaultPlan(std::int64_t operation, FileFault fault, FaultExtent extent) noexcept;
};

namespace faults {

inline std::atomic<bool> isPlanned{false};

FileFault CountOperation() noexcept;

}  // namespace faults

// For back ends: counts one operation and says what is to become of it.
[[nodiscard]] inline FileFault NextFileFault() noexcept {
  return faults::isPlanned.load(std::memory_order_relaxed) ? faults::CountOperation() : FileFault::None;
}

// For operations that either happen or not.
[[nodiscard]] inline bool NextFileOperationFails() noexcept { return NextFileFault() != FileFault::None; }

}  // namespace tavimo::platform
