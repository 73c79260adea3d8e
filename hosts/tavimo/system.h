// What the C++ library has no words for, or others on each system: the terminal, Ctrl-C, the person's data folder. One source file for each
// system; nothing else in this program knows which system it runs on.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tavimo::host {

// The words of the command line behind the program's name, in UTF-8.
[[nodiscard]] std::vector<std::string> CommandLineWords(int argc, char** argv);

// From here on standard output and standard error take UTF-8, whether they lead to a terminal or a file, and line ends
// stay as they are written. For the start of the program.
void OpenOutputs();

// Whether standard error is a terminal that a progress bar may be drawn on.
[[nodiscard]] bool ErrorsGoToTerminal();

// Whether standard output is a terminal, which shows colours.
[[nodiscard]] bool OutputGoesToTerminal();

// What went wrong, in the system's words and in UTF-8.
[[nodiscard]] std::string ReasonOf(const std::error_code& error);

// Gives a file or folder another name in one step; a file that has the name already is replaced. Between two disks it
// fails with cross_device_link and copies nothing: a copy that a kill cuts short would stand in place of a whole file.
void Rename(const std::filesystem::path& from, const std::filesystem::path& to, std::error_code& error);

// Gives a file another name, by a link of whatever kind the disk and the person's rights allow.
void MakeSecondName(const std::filesystem::path& file, const std::filesystem::path& name, std::error_code& error);

// The path as the disk spells it, so that a file has one name only where case does not tell names apart.
[[nodiscard]] std::filesystem::path StoredSpelling(const std::filesystem::path& path);

// When a file was last written, as exactly as the disk keeps it: files that belong together are known by equal times.
[[nodiscard]] std::filesystem::file_time_type LastWriteTime(const std::filesystem::path& file, std::error_code& error);
void SetLastWriteTime(const std::filesystem::path& file, std::filesystem::file_time_type time, std::error_code& error);

// Waits until what a file or folder holds is on the disk itself, so that a power cut leaves it. What cannot be flushed is
// left to the system.
void FlushToDisk(const std::filesystem::path& path);

// Text of an encoding that the system knows by that name, in UTF-8; none where the bytes are not all of that encoding, or
// it is not known. Zero bytes stay.
[[nodiscard]] std::optional<std::string> Utf8FromEncoding(std::string_view bytes, const char* encoding);

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
extern const char* const kUserDataFolder;  // how people of this system write it

// From here on Ctrl-C only raises a flag, and a closed pipe is a failed write instead of the program's death.
void HoldInterrupts();
[[nodiscard]] bool Interrupted();

// Throws Cancelled once Ctrl-C was pressed. For long work, between its steps.
void StopIfInterrupted();

// Ends the program the way Ctrl-C does, so that a shell loop around it stops too.
[[noreturn]] void EndAsInterrupted();

}  // namespace tavimo::host
