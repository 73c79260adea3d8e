// The system's own words on Linux and its relatives.
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "refusal.h"
#include "system.h"

namespace tavimo::host {

namespace {

volatile std::sig_atomic_t interruptSignal = 0;

void NoteInterrupt(int signal) { interruptSignal = signal; }

}  // namespace

bool ErrorsGoToTerminal() { return isatty(STDERR_FILENO) == 1; }

std::filesystem::path UserDataFolder() {
  // The base directory rules count a relative path as none.
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && std::filesystem::path(data).is_absolute()) return std::filesystem::path(data) / "tavimo";
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == '\0') return {};
  return std::filesystem::path(home) / ".local" / "share" / "tavimo";
}

void HoldInterrupts() {
  for (const int signal : {SIGINT, SIGTERM}) {
    // Whoever started the program deaf to a signal, as a shell does in the background, meant it.
    if (std::signal(signal, NoteInterrupt) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
  std::signal(SIGPIPE, SIG_IGN);
}

bool Interrupted() { return interruptSignal != 0; }

void StopIfInterrupted() {
  if (Interrupted()) throw Cancelled();
}

void EndAsInterrupted() {
  const int signal = interruptSignal != 0 ? static_cast<int>(interruptSignal) : SIGINT;
  std::signal(signal, SIG_DFL);
  std::raise(signal);
  std::_Exit(1);
}

}  // namespace tavimo::host
