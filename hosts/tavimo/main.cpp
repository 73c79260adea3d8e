// tavimo, the command-line host: the whole road of a lesson through the engine's exports. This file turns what goes
// wrong anywhere into one sentence and an exit code.
#include <filesystem>
#include <iostream>

#include "command_line.h"
#include "engine_boxes.h"
#include "refusal.h"
#include "system.h"
#include "text.h"
#include "trace.h"

namespace tavimo::host {

namespace {

int Refuse(const std::string& sentence) {
  std::cerr << "tavimo: " << sentence << '\n';
  return kRefused;
}

int Run(int argc, char** argv) {
  OpenOutputs();
  HoldInterrupts();
  ShowBoxesAsLines();
  const ParsedCommandLine line = ParseCommandLine(CommandLineWords(argc, argv));
  if (!line.options) return line.exitCode;
  if (line.options->isTraced) TraceCalls();
  try {
    return line.options->command(*line.options);
  } catch (const Refusal& refusal) {
    const auto& files = line.options->files;
    return Refuse((files.empty() ? "" : Readable(files.front().filename()) + ": ") + refusal.what());
  }
}

int RunSafely(int argc, char** argv) try {
  const int exitCode = Run(argc, argv);
  // A full disk or a closed pipe shows only now.
  if (!std::cout.flush()) return Refuse("the output could not be written");
  return exitCode;
} catch (const Cancelled&) {
  EndAsInterrupted();
} catch (const std::filesystem::filesystem_error& error) {
  return Refuse(Readable(error.path1()) + ": " + ReasonOf(error.code()));
} catch (const std::exception& error) {
  return Refuse(error.what());
}

}  // namespace

}  // namespace tavimo::host

int main(int argc, char** argv) { return tavimo::host::RunSafely(argc, argv); }
