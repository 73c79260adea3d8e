// The system's own words on Linux and its relatives.
#include <dlfcn.h>
#include <fcntl.h>
#include <iconv.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "library_calls.h"
#include "refusal.h"
#include "system.h"

namespace tavimo::host {

namespace {

volatile std::sig_atomic_t interruptSignal = 0;

void NoteInterrupt(int signal) { interruptSignal = signal; }

bool IsNameOf(const std::filesystem::path& path, int file) {
  struct stat named {};
  struct stat opened {};
  return stat(path.c_str(), &named) == 0 && fstat(file, &opened) == 0 && named.st_ino == opened.st_ino &&
         named.st_dev == opened.st_dev;
}

}  // namespace

const char* const kUserDataFolder = "~/.local/share/tavimo";

std::vector<std::string> CommandLineWords(int argc, char** argv) { return {argv + std::min(argc, 1), argv + argc}; }

void OpenOutputs() {}  // they are so already

std::string ReasonOf(const std::error_code& error) { return error.message(); }

void Rename(const std::filesystem::path& from, const std::filesystem::path& to, std::error_code& error) {
  std::filesystem::rename(from, to, error);
}

void MakeSecondName(const std::filesystem::path& file, const std::filesystem::path& name, std::error_code& error) {
  std::filesystem::create_symlink(file, name, error);
  if (error) std::filesystem::create_hard_link(file, name, error);
}

std::filesystem::file_time_type LastWriteTime(const std::filesystem::path& file, std::error_code& error) {
  return std::filesystem::last_write_time(file, error);
}

void SetLastWriteTime(const std::filesystem::path& file, std::filesystem::file_time_type time, std::error_code& error) {
  std::filesystem::last_write_time(file, time, error);
}

std::filesystem::path StoredSpelling(const std::filesystem::path& path) { return path; }

bool ErrorsGoToTerminal() { return isatty(STDERR_FILENO) == 1; }

bool OutputGoesToTerminal() { return isatty(STDOUT_FILENO) == 1; }

void FlushToDisk(const std::filesystem::path& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);  // NOLINT(cppcoreguidelines-pro-type-vararg)
  if (file < 0) return;
  fsync(file);
  close(file);
}

void* FindInLibrary(const char* library, const char* function) {
  void* handle = dlopen(library, RTLD_NOW | RTLD_LOCAL);
  return handle == nullptr ? nullptr : dlsym(handle, function);
}

std::optional<std::string> Utf8FromEncoding(std::string_view bytes, const char* encoding) {
  constexpr std::size_t kLongestCharacter = 4;  // in UTF-8, for at least one byte of any encoding here
  void* const converter = iconv_open("UTF-8", encoding);
  if (converter == reinterpret_cast<iconv_t>(-1)) return {};
  std::string utf8(bytes.size() * kLongestCharacter, '\0');
  char* input = const_cast<char*>(bytes.data());  // which iconv does not write to
  char* output = utf8.data();
  std::size_t inputLeft = bytes.size();
  std::size_t outputLeft = utf8.size();
  const std::size_t result = iconv(converter, &input, &inputLeft, &output, &outputLeft);
  iconv_close(converter);
  if (result == static_cast<std::size_t>(-1)) return {};
  utf8.resize(utf8.size() - outputLeft);
  return utf8;
}

QuietErrors::QuietErrors() : errors_(dup(STDERR_FILENO)) {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);  // NOLINT(cppcoreguidelines-pro-type-vararg)
  if (errors_ >= 0 && nowhere >= 0) dup2(nowhere, STDERR_FILENO);
  if (nowhere >= 0) close(nowhere);
}

QuietErrors::~QuietErrors() {
  if (errors_ < 0) return;
  dup2(errors_, STDERR_FILENO);
  close(errors_);
}

FileLock::FileLock(const std::filesystem::path& file)
    : file_(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644)) {  // NOLINT(cppcoreguidelines-pro-type-vararg)
  if (file_ < 0) return;
  const bool isLocked = flock(static_cast<int>(file_), LOCK_EX | LOCK_NB) == 0;
  // Whoever held it may have given the file another name meanwhile.
  if (isLocked && IsNameOf(file, static_cast<int>(file_))) return;
  isHeldElsewhere_ = isLocked || errno == EWOULDBLOCK;
  close(static_cast<int>(file_));
  file_ = -1;
}

// The file stays: removing it would let a process lock a file that the next one no longer finds.
FileLock::~FileLock() {
  if (file_ >= 0) close(static_cast<int>(file_));
}

struct TerminalKeys::Settings {
  termios values{};
};

TerminalKeys::TerminalKeys() {
  auto settings = std::make_unique<Settings>();
  // A program in the background would be stopped for touching the terminal.
  const bool isOurs = isatty(STDIN_FILENO) == 1 && tcgetpgrp(STDIN_FILENO) == getpgrp();
  if (!isOurs || tcgetattr(STDIN_FILENO, &settings->values) != 0) return;
  termios atOnce = settings->values;
  atOnce.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  atOnce.c_cc[VMIN] = 0;
  atOnce.c_cc[VTIME] = 0;
  if (tcsetattr(STDIN_FILENO, TCSANOW, &atOnce) == 0) before_ = std::move(settings);
}

TerminalKeys::~TerminalKeys() {
  if (before_) tcsetattr(STDIN_FILENO, TCSANOW, &before_->values);
}

char TerminalKeys::Next() {
  char key = 0;
  return before_ && read(STDIN_FILENO, &key, 1) == 1 ? key : '\0';
}

std::optional<std::string> InputLines::Next() {
  constexpr int kPollMs = 200;  // a Ctrl-C just before the waiting would not end it
  for (bool isAtEnd = false;;) {
    const std::size_t feed = waiting_.find('\n');
    if (feed != std::string::npos || (isAtEnd && !waiting_.empty())) {
      std::string line = waiting_.substr(0, feed);
      waiting_.erase(0, feed == std::string::npos ? feed : feed + 1);
      return line;
    }
    if (isAtEnd || Interrupted()) return {};
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, kPollMs) <= 0) continue;
    std::array<char, 256> piece{};
    const ssize_t got = read(STDIN_FILENO, piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    isAtEnd = got <= 0;
    if (!isAtEnd) waiting_.append(piece.data(), static_cast<std::size_t>(got));
  }
}

std::filesystem::path UserDataFolder() {
  // The base directory rules count a relative path as none.
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && std::filesystem::path(data).is_absolute()) return std::filesystem::path(data) / "tavimo";
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == '\0') return {};
  return std::filesystem::path(home) / ".local" / "share" / "tavimo";
}

void HoldInterrupts() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
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
