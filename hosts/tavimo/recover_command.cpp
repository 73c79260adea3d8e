// `tavimo recover`: finishes and keeps the recordings of programs that died.
#include <iostream>

#include "options.h"
#include "tape_recovery.h"
#include "text.h"

namespace tavimo::host {

int RunRecover(const Options& options) {
  const RecoveryReport report = RecoverTapes(options.home);
  for (const KeptTake& take : report.kept) std::cout << "recovered: " << Describe(take) << '\n';
  for (const auto& lesson : report.alive) {
    std::cout << Readable(lesson) << ": another tavimo is recording there, so it was left alone\n";
  }
  for (const std::string& failure : report.failures) std::cerr << "tavimo: " << failure << '\n';
  const bool isQuiet = report.kept.empty() && report.alive.empty() && report.failures.empty();
  if (isQuiet) std::cout << "nothing to recover: every recording is kept\n";
  return report.failures.empty() ? kDone : kRefused;
}

}  // namespace tavimo::host
