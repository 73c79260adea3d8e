// What the C++ library has no words for: the terminal, Ctrl-C and the person's data folder. One source file for each
// system; nothing else in this program knows which system it runs on.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tavimo::host {

// Whether standard error is a terminal that a progress bar may be drawn on.
[[nodiscard]] bool ErrorsGoToTerminal();

// Whether standard output is a terminal, which shows colours.
[[nodiscard]] bool OutputGoesToTerminal();

// Waits until what a file or folder holds is on the disk itself, so that a power cut leaves it. What cannot be flushed is
// left to the system.
void FlushToDisk(const std::filesystem::path& path);

// Text of an encoding that the system knows by that name, in UTF-8; none where the bytes are not all of that encoding, or
// it is not known. Zero bytes stay.
[[nodiscard]] std::optional<std::string> Utf8FromEncoding(std::string_view bytes, const char* encoding);

// A library of the system that only some commands need: loading it with the program would cost every start of it.
// Null where the library or the function is missing. It is never unloaded.
[[nodiscard]] void* FindInLibrary(const char* library, const char* function);

// While it lives nothing that a library prints on standard error is seen: decoders talk to programmers there.
class QuietErrors {
 public:
  QuietErrors();
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors();

 private:
  int errors_;
};

// A file that one process at a time holds: from its making to its end, or until the process dies, however it dies.
class FileLock {
 public:
  // Makes the file where it is missing, and never waits.
  explicit FileLock(const std::filesystem::path& file);
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
  ~FileLock();

  [[nodiscard]] bool IsHeld() const { return file_ >= 0; }

  // Whether another process holds it; where none does either, the file cannot be made or locked.
  [[nodiscard]] bool IsHeldElsewhere() const { return isHeldElsewhere_; }

 private:
  std::intptr_t file_;
  bool isHeldElsewhere_ = false;
};

// While it lives, keys pressed on the terminal are seen at once and not echoed. Where standard input is no terminal, or
// belongs to another program at the moment, no key is ever seen.
class TerminalKeys {
 public:
  TerminalKeys();
  TerminalKeys(const TerminalKeys&) = delete;
  TerminalKeys& operator=(const TerminalKeys&) = delete;
  ~TerminalKeys();

  [[nodiscard]] bool AreSeen() const { return before_ != nullptr; }

  // The next key pressed, or 0.
  [[nodiscard]] char Next();

 private:
  struct Settings;
  std::unique_ptr<Settings> before_;
};

// Lines of standard input, from a terminal or a pipe alike.
class InputLines {
 public:
  // Waits for the next line and gives it without its end; none at the end of the input or after Ctrl-C.
  [[nodiscard]] std::optional<std::string> Next();

 private:
  std::string waiting_;
};

// The folder in which programs keep what they know of this person's files; empty when the system names none.
[[nodiscard]] std::filesystem::path UserDataFolder();

// From here on Ctrl-C only raises a flag, and a closed pipe is a failed write instead of the program's death.
void HoldInterrupts();
[[nodiscard]] bool Interrupted();

// Throws Cancelled once Ctrl-C was pressed. For long work, between its steps.
void StopIfInterrupted();

// Ends the program the way Ctrl-C does, so that a shell loop around it stops too.
[[noreturn]] void EndAsInterrupted();

}  // namespace tavimo::host
