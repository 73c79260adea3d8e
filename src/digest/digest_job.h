// The one digest job of the process: what the worker thread does, and the two cells it shares with the host's thread.
#pragma once

#include <atomic>
#include <cstdint>

#include "core/fixed_text.h"
#include "digest/digest_summary.h"

namespace tavimo::digest {

using JobPath = core::FixedText<199>;

// Progress and "a worker runs" are one cell: a host that reads 1000 may start the next job at once, and a worker that
// ends can never be taken for the next one.
inline constexpr std::int32_t kJobDone = 1000;
inline constexpr std::int32_t kWorkerRuns = 1 << 16;

struct DigestJob {
  JobPath sourcePath;  // the recording that gives the digest its file time
  JobPath wavePath;    // the wave that is summarised; deleted afterwards when it is not the source
  JobPath digestPath;
  std::atomic<std::int32_t> cancelRequested = 0;
  std::atomic<std::int32_t> percentage = 0;  // with kWorkerRuns added while a worker runs
};

// Takes the job for a worker. False when one runs (which goes on untouched), or when a path is empty or longer than 199
// bytes; the percentage stays what it was.
[[nodiscard]] bool BeginJob(DigestJob& job, const char* source, const char* wave, const char* digest) noexcept;

// Gives back a job whose worker could not be started.
void AbandonJob(DigestJob& job) noexcept;

// The worker's whole work; its last act is to store the final percentage. REQUIRES: BeginJob.
void RunJob(DigestJob& job, SummaryWorkspace& workspace) noexcept;

}  // namespace tavimo::digest
