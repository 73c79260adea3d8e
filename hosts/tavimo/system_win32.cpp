// The system's own words on Windows.
// The first one has to come first.
// clang-format off
#include <windows.h>
#include <shellapi.h>
#include <shlobj.h>
#include <fcntl.h>
#include <io.h>
// clang-format on

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cwctype>
#include <iostream>
#include <streambuf>

#include "refusal.h"
#include "system.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr DWORD kPollMs = 20;

std::atomic<bool> isInterrupted = false;
// The main thread waits for the person, who may never come, with nothing half done.
std::atomic<bool> isAtPrompt = false;

// Runs on a thread of the system's own. When the console is closed or the person logs off, the process is ended once it
// returns, so it leaves the main thread the time to end by itself; the system waits some seconds at most.
BOOL WINAPI NoteInterrupt(DWORD event) {
  isInterrupted = true;
  const bool isLastWord = event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT;
  while (isLastWord && !isAtPrompt) Sleep(kPollMs);
  return TRUE;
}

std::string Utf8FromWide(std::wstring_view wide) {
  const int units = static_cast<int>(wide.size());
  std::string utf8(
      static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr)),
      '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(), static_cast<int>(utf8.size()), nullptr, nullptr);
  return utf8;
}

std::wstring WideFromBytes(UINT codePage, DWORD flags, std::string_view bytes) {
  const int count = static_cast<int>(bytes.size());
  std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(codePage, flags, bytes.data(), count, nullptr, 0)),
                    L'\0');
  MultiByteToWideChar(codePage, flags, bytes.data(), count, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

bool IsConsole(DWORD stream) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

// Writes to a console in the system's own text: its code page is the person's business and need not have our characters.
class ConsoleText : public std::streambuf {
 public:
  explicit ConsoleText(DWORD stream) : console_(GetStdHandle(stream)) {}

 protected:
  int_type overflow(int_type byte) override {
    if (traits_type::eq_int_type(byte, traits_type::eof())) return traits_type::not_eof(byte);
    const char one = traits_type::to_char_type(byte);
    return xsputn(&one, 1) == 1 ? byte : traits_type::eof();
  }

  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    waiting_.append(bytes, static_cast<std::size_t>(count));
    const std::size_t whole = WholeCharacters();
    const std::wstring wide = WideFromBytes(CP_UTF8, 0, std::string_view(waiting_).substr(0, whole));
    waiting_.erase(0, whole);
    return Write(wide) ? count : 0;
  }

 private:
  // Bytes up to a character whose rest is still to come.
  [[nodiscard]] std::size_t WholeCharacters() const {
    constexpr std::size_t kLongestCharacter = 4;
    for (std::size_t back = 1; back <= std::min(kLongestCharacter, waiting_.size()); ++back) {
      const auto byte = static_cast<unsigned char>(waiting_[waiting_.size() - back]);
      if ((byte & 0xC0) == 0x80) continue;
      const std::size_t length = byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
      return length > back ? waiting_.size() - back : waiting_.size();
    }
    return waiting_.size();
  }

  [[nodiscard]] bool Write(std::wstring_view wide) const {
    constexpr std::size_t kMostUnits = 8192;  // consoles of old take no more at once
    while (!wide.empty()) {
      std::wstring_view piece = wide.substr(0, kMostUnits);
      if (piece.size() > 1 && IS_HIGH_SURROGATE(piece.back())) piece.remove_suffix(1);
      DWORD written = 0;
      const auto units = static_cast<DWORD>(piece.size());
      if (!WriteConsoleW(console_, piece.data(), units, &written, nullptr) || written == 0) return false;
      wide.remove_prefix(written);
    }
    return true;
  }

  HANDLE console_;
  std::string waiting_;
};

// The console's own setting comes back with the program's end.
struct ColouredConsole {
  HANDLE console = nullptr;
  DWORD before = 0;
};
std::array<ColouredConsole, 2> colouredConsoles;

void RestoreConsoles() {
  for (const ColouredConsole& coloured : colouredConsoles) {
    if (coloured.console != nullptr) SetConsoleMode(coloured.console, coloured.before);
  }
}

// Whether it is a console that obeys the escapes for colours and wiped lines, which those before Windows 10 do not.
bool TakesEscapes(DWORD stream, ColouredConsole& coloured) {
  constexpr DWORD kVirtualTerminal = 4;  // newer than the headers this program is built against
  HANDLE console = GetStdHandle(stream);
  DWORD mode = 0;
  if (!GetConsoleMode(console, &mode)) return false;
  if ((mode & kVirtualTerminal) != 0) return true;
  if (!SetConsoleMode(console, mode | kVirtualTerminal)) return false;
  coloured = {console, mode};
  return true;
}

// Owns what it opens.
class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() {
    if (IsOpen()) CloseHandle(handle_);
  }
  [[nodiscard]] bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] HANDLE Get() const { return handle_; }

 private:
  HANDLE handle_;
};

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

HANDLE OpenAsItIs(const fs::path& path, DWORD access) {
  return CreateFileW(path.c_str(), access, kShared, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

bool IsNameOf(const fs::path& path, HANDLE file) {
  const Handle named(OpenAsItIs(path, 0));
  BY_HANDLE_FILE_INFORMATION left{};
  BY_HANDLE_FILE_INFORMATION right{};
  if (!named.IsOpen() || !GetFileInformationByHandle(named.Get(), &left) || !GetFileInformationByHandle(file, &right)) {
    return false;
  }
  return left.dwVolumeSerialNumber == right.dwVolumeSerialNumber && left.nFileIndexHigh == right.nFileIndexHigh &&
         left.nFileIndexLow == right.nFileIndexLow;
}

using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
constexpr Ticks kBeginToUnix = std::chrono::seconds(11'644'473'600);  // the system counts from 1601 on

// Virus scanners and search services hold a new file open for moments.
bool IsHeldForMoments(DWORD error) { return error == ERROR_ACCESS_DENIED || error == ERROR_SHARING_VIOLATION; }

// The name of the last part as the folder has it. With a wildcard it is the name of no file, but another would be found.
fs::path StoredName(const fs::path& path) {
  WIN32_FIND_DATAW found{};
  if (path.filename().wstring().find_first_of(L"*?<>\"") != std::wstring::npos) return path.filename();
  HANDLE search = FindFirstFileW(path.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return path.filename();
  FindClose(search);
  return found.cFileName;
}

}  // namespace

const char* const kUserDataFolder = "%LOCALAPPDATA%\\tavimo";

// The narrow words are in the system's code page, which may lack characters of a file's name.
std::vector<std::string> CommandLineWords(int argc, char** argv) {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  if (wide == nullptr) return {argv + std::min(argc, 1), argv + argc};
  std::vector<std::string> words;
  words.reserve(static_cast<std::size_t>(count));
  for (int i = 1; i < count; ++i) words.push_back(Utf8FromWide(wide[i]));
  LocalFree(wide);
  return words;
}

void OpenOutputs() {
  // Never destroyed: the standard streams are flushed after everything else.
  if (IsConsole(STD_OUTPUT_HANDLE)) std::cout.rdbuf(new ConsoleText(STD_OUTPUT_HANDLE));
  if (IsConsole(STD_ERROR_HANDLE)) std::cerr.rdbuf(new ConsoleText(STD_ERROR_HANDLE));
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
  std::atexit(RestoreConsoles);
}

bool ErrorsGoToTerminal() { return TakesEscapes(STD_ERROR_HANDLE, colouredConsoles[0]); }

bool OutputGoesToTerminal() { return TakesEscapes(STD_OUTPUT_HANDLE, colouredConsoles[1]); }

std::string ReasonOf(const std::error_code& error) {
  if (error.category() != std::system_category()) return error.message();
  std::array<wchar_t, 512> text{};
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                     static_cast<DWORD>(error.value()), 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
  std::wstring_view reason(text.data(), length);
  while (!reason.empty() && (reason.back() < L' ' || reason.back() == L' ' || reason.back() == L'.')) {
    reason.remove_suffix(1);
  }
  return reason.empty() ? "error " + std::to_string(error.value()) : Utf8FromWide(reason);
}

void Rename(const fs::path& from, const fs::path& to, std::error_code& error) {
  constexpr int kTries = 25;
  DWORD code = 0;
  for (int i = 0; i < kTries; ++i) {
    code = MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) ? 0 : GetLastError();
    if (!IsHeldForMoments(code)) break;
    Sleep(kPollMs);
  }
  error = code == ERROR_NOT_SAME_DEVICE ? std::make_error_code(std::errc::cross_device_link)
                                        : std::error_code(static_cast<int>(code), std::system_category());
}

// Hard links end at the drive and are not on every disk; the others need a right, or a setting of newer systems. Whether one
// was made is looked at, as some systems claim it.
void MakeSecondName(const fs::path& file, const fs::path& name, std::error_code& error) {
  constexpr DWORD kWithoutRight = 2;  // newer than the headers this program is built against
  if (CreateHardLinkW(name.c_str(), file.c_str(), nullptr)) return error.clear();
  error = std::error_code(static_cast<int>(GetLastError()), std::system_category());
  for (const DWORD flags : {kWithoutRight, DWORD{0}}) {
    if (CreateSymbolicLinkW(name.c_str(), file.c_str(), flags) && Handle(OpenAsItIs(name, 0)).IsOpen()) {
      return error.clear();
    }
  }
}

// The C++ library of this compiler knows whole seconds alone, the disk ten millionths of one.
fs::file_time_type LastWriteTime(const fs::path& file, std::error_code& error) {
  const Handle opened(OpenAsItIs(file, FILE_READ_ATTRIBUTES));
  FILETIME time{};
  const bool isKnown = opened.IsOpen() && GetFileTime(opened.Get(), nullptr, nullptr, &time);
  error = isKnown ? std::error_code() : std::error_code(static_cast<int>(GetLastError()), std::system_category());
  if (!isKnown) return fs::file_time_type::min();
  const Ticks sinceBegin{static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime)};
  return std::chrono::file_clock::from_sys(std::chrono::sys_time<Ticks>(sinceBegin - kBeginToUnix));
}

void SetLastWriteTime(const fs::path& file, fs::file_time_type time, std::error_code& error) {
  const auto sinceUnix = std::chrono::floor<Ticks>(std::chrono::file_clock::to_sys(time).time_since_epoch());
  const auto ticks = static_cast<std::uint64_t>((sinceUnix + kBeginToUnix).count());
  const FILETIME written{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  const Handle opened(OpenAsItIs(file, FILE_WRITE_ATTRIBUTES));
  const bool isSet = opened.IsOpen() && SetFileTime(opened.Get(), nullptr, nullptr, &written);
  error = isSet ? std::error_code() : std::error_code(static_cast<int>(GetLastError()), std::system_category());
}

fs::path StoredSpelling(const fs::path& path) {
  std::wstring drive = path.root_path().wstring();
  if (drive.size() > 1 && drive[1] == L':')
    drive[0] = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(drive[0])));
  fs::path spelled = drive;
  fs::path named = path.root_path();
  for (const fs::path& part : path.relative_path()) {
    named /= part;
    spelled /= StoredName(named);
  }
  return spelled;
}

// Of a folder the system flushes nothing, and renames there are in its journal.
void FlushToDisk(const fs::path& path) {
  const Handle file(OpenAsItIs(path, GENERIC_WRITE));
  if (file.IsOpen()) FlushFileBuffers(file.Get());
}

namespace {

std::wstring WideFromUtf16(std::string_view bytes, std::size_t lowByte) {
  std::wstring wide;
  wide.reserve(bytes.size() / 2);
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<unsigned char>(bytes[i + lowByte]);
    const auto high = static_cast<unsigned char>(bytes[i + 1 - lowByte]);
    wide += static_cast<wchar_t>(low | high << 8);
  }
  return wide;
}

// None where a half of a character stands alone.
std::optional<std::string> Utf8FromUtf16(std::string_view bytes, std::size_t lowByte) {
  if (bytes.size() % 2 != 0) return {};
  const std::wstring wide = WideFromUtf16(bytes, lowByte);
  const int units = static_cast<int>(wide.size());
  const int room = WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, wide.data(), units, nullptr, 0, nullptr, nullptr);
  if (room == 0 && !wide.empty()) return {};
  return Utf8FromWide(wide);
}

}  // namespace

std::optional<std::string> Utf8FromEncoding(std::string_view bytes, const char* encoding) {
  constexpr UINT kGbk = 936;
  constexpr UINT kGb18030 = 54936;
  const std::string_view name = encoding;
  if (bytes.empty()) return std::string();
  if (name == "UTF-16LE") return Utf8FromUtf16(bytes, 0);
  if (name == "UTF-16BE") return Utf8FromUtf16(bytes, 1);
  const UINT codePage = name == "UTF-8" ? CP_UTF8 : name == "CP936" ? kGbk : name == "GB18030" ? kGb18030 : 0;
  if (codePage == 0) return {};
  const std::wstring wide = WideFromBytes(codePage, MB_ERR_INVALID_CHARS, bytes);
  if (wide.empty()) return {};
  return Utf8FromWide(wide);
}

// Locks of this system keep others from reading what they cover: it covers a byte that no file reaches.
FileLock::FileLock(const fs::path& file)
    : file_(reinterpret_cast<std::intptr_t>(
          CreateFileW(file.c_str(), GENERIC_READ, kShared, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr))) {
  constexpr DWORD kFarBeyondTheEnd = 0x7FFFFFFF;
  HANDLE handle = reinterpret_cast<HANDLE>(file_);
  if (handle == INVALID_HANDLE_VALUE) return;
  OVERLAPPED place{};
  place.OffsetHigh = kFarBeyondTheEnd;
  const bool isLocked = LockFileEx(handle, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place) != 0;
  const DWORD error = GetLastError();
  // Whoever held it may have given the file another name meanwhile.
  if (isLocked && IsNameOf(file, handle)) return;
  isHeldElsewhere_ = isLocked || error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING;
  CloseHandle(handle);
  file_ = -1;
}

// The file stays: removing it would let a process lock a file that the next one no longer finds.
FileLock::~FileLock() {
  if (file_ != -1) CloseHandle(reinterpret_cast<HANDLE>(file_));
}

struct TerminalKeys::Settings {
  DWORD mode = 0;
};

TerminalKeys::TerminalKeys() {
  auto settings = std::make_unique<Settings>();
  HANDLE console = GetStdHandle(STD_INPUT_HANDLE);
  if (!GetConsoleMode(console, &settings->mode)) return;
  const DWORD atOnce = settings->mode & ~static_cast<DWORD>(ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT);
  if (SetConsoleMode(console, atOnce)) before_ = std::move(settings);
}

TerminalKeys::~TerminalKeys() {
  if (before_) SetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), before_->mode);
}

char TerminalKeys::Next() {
  HANDLE console = GetStdHandle(STD_INPUT_HANDLE);
  DWORD waiting = 0;
  while (before_ && GetNumberOfConsoleInputEvents(console, &waiting) && waiting > 0) {
    INPUT_RECORD event{};
    DWORD got = 0;
    if (!ReadConsoleInputW(console, &event, 1, &got) || got == 0) return '\0';
    const wchar_t unit = event.Event.KeyEvent.uChar.UnicodeChar;
    const bool isKey = event.EventType == KEY_EVENT && event.Event.KeyEvent.bKeyDown && unit > 0 && unit < 0x80;
    if (isKey) return static_cast<char>(unit);
  }
  return '\0';
}

namespace {

// Up to that many units of what the person types; none at the end of input and after Ctrl-C.
std::wstring ReadConsoleUnits(HANDLE console, std::size_t most) {
  std::wstring units(most, L'\0');
  DWORD got = 0;
  isAtPrompt = true;
  const bool isAsked = !Interrupted();
  const bool isRead = isAsked && ReadConsoleW(console, units.data(), static_cast<DWORD>(most), &got, nullptr) != 0;
  const DWORD error = isRead ? 0 : GetLastError();
  isAtPrompt = false;
  // Ctrl-C ends the reading without text, perhaps before the thread that notes it has run; the end of input is a character.
  if (isRead ? got == 0 : isAsked && error == ERROR_OPERATION_ABORTED) isInterrupted = true;
  units.resize(isRead && !Interrupted() ? got : 0);
  return units;
}

// A piece of what the person types, in UTF-8 and in whole characters; empty at the end (Ctrl-Z) and after Ctrl-C.
std::string ReadConsolePiece(HANDLE console) {
  constexpr wchar_t kEndOfInput = 0x1A;
  std::wstring piece = ReadConsoleUnits(console, 256);
  if (piece.starts_with(kEndOfInput)) return {};
  if (!piece.empty() && IS_HIGH_SURROGATE(piece.back())) piece += ReadConsoleUnits(console, 1);
  return Utf8FromWide(piece);
}

// A piece of a pipe or a file; empty at its end and after Ctrl-C, which does not end the reading of a pipe.
std::string ReadPiece(HANDLE input) {
  DWORD waiting = 0;
  while (GetFileType(input) == FILE_TYPE_PIPE && PeekNamedPipe(input, nullptr, 0, nullptr, &waiting, nullptr) &&
         waiting == 0) {
    if (Interrupted()) return {};
    Sleep(kPollMs);
  }
  std::string piece(256, '\0');
  DWORD got = 0;
  if (!ReadFile(input, piece.data(), static_cast<DWORD>(piece.size()), &got, nullptr)) got = 0;
  piece.resize(got);
  return piece;
}

std::string WithoutReturn(std::string line) {
  if (line.ends_with('\r')) line.pop_back();
  return line;
}

}  // namespace

std::optional<std::string> InputLines::Next() {
  HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  for (bool isAtEnd = false;;) {
    const std::size_t feed = waiting_.find('\n');
    if (feed != std::string::npos || (isAtEnd && !waiting_.empty())) {
      std::string line = waiting_.substr(0, feed);
      waiting_.erase(0, feed == std::string::npos ? feed : feed + 1);
      return WithoutReturn(std::move(line));
    }
    if (isAtEnd || Interrupted()) return {};
    const std::string piece = IsConsole(STD_INPUT_HANDLE) ? ReadConsolePiece(input) : ReadPiece(input);
    isAtEnd = piece.empty();
    waiting_ += piece;
  }
}

fs::path UserDataFolder() {
  wchar_t* folder = nullptr;
  const bool isKnown = SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, &folder) == S_OK;
  fs::path path = isKnown ? fs::path(folder) / "tavimo" : fs::path();
  CoTaskMemFree(folder);
  return path;
}

void HoldInterrupts() { SetConsoleCtrlHandler(NoteInterrupt, TRUE); }

bool Interrupted() { return isInterrupted; }

void StopIfInterrupted() {
  if (Interrupted()) throw Cancelled();
}

// The status by which a command prompt knows that a program was interrupted, and asks whether to go on with its batch.
void EndAsInterrupted() {
  constexpr UINT kInterrupted = 0xC000013A;
  RestoreConsoles();
  ExitProcess(kInterrupted);
}

}  // namespace tavimo::host
