// Files, folders and drives as the engine sees them: named by engine paths (GBK, backslashes, an optional drive letter),
// held by streams with one owner each. Not for wave files, which have their own layer (riff.h).
//
// Callers guarantee: paths are zero-terminated; a stream is used by one thread at a time. Null paths are allowed.
// A back end checks: null and empty paths, folders where a file is meant, read-only files (also where the process's own
// rights would let it write), characters that cannot stand in a name. Every failure is a result; nothing throws, nothing
// shows a message. Names are found without regard to case when the exact spelling does not exist.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace tavimo::platform {

// The longest entry name a directory search delivers, in bytes, without the terminating zero.
inline constexpr std::size_t kMaxEntryName = 511;

enum class OpenMode {
  Read,       // an existing file
  ReadWrite,  // an existing file that is not read-only
  Create,     // for reading and writing; an existing file is truncated at once, unless it is read-only
};

enum class SeekFrom { Start, Current, End };

// A last-write time at the full resolution of the file system, in units only the back end knows.
struct FileTime {
  std::int64_t value = 0;
  friend bool operator==(const FileTime&, const FileTime&) = default;
};

// An open file and the position in it. Reads and writes are not buffered: what Write returned true for has reached the
// operating system. Closes itself.
class FileStream {
 public:
  constexpr FileStream() noexcept = default;
  FileStream(FileStream&& other) noexcept { Swap(other); }
  FileStream& operator=(FileStream&& other) noexcept {
    FileStream moved(std::move(other));
    Swap(moved);
    return *this;
  }
  ~FileStream() { Close(); }

  // A stream that is not open when the file cannot be opened.
  [[nodiscard]] static FileStream Open(const char* path, OpenMode mode) noexcept;

  [[nodiscard]] bool IsOpen() const noexcept { return handle_ != kNoHandle; }

  // Bytes read, fewer than asked for only at the end of the file; -1 when reading fails.
  [[nodiscard]] std::int64_t Read(void* buffer, std::int64_t byteCount) noexcept;

  // True when every byte was written. After false the position stands behind what was written.
  [[nodiscard]] bool Write(const void* bytes, std::int64_t byteCount) noexcept;

  // Copies from another stream's position to this one's, both of which move: the bytes copied, fewer than asked for only
  // at the end of the source; -1 when reading or writing fails. Costs no memory, and on some file systems no time.
  [[nodiscard]] std::int64_t CopyFrom(FileStream& source, std::int64_t byteCount) noexcept;

  // The new position, or -1 when it would be negative (the position then stays). Positions past the end are allowed;
  // a write there fills the gap with zero bytes.
  std::int64_t Seek(std::int64_t offset, SeekFrom origin) noexcept;
  [[nodiscard]] std::int64_t Position() const noexcept { return position_; }

  // The file's length in bytes, or -1.
  [[nodiscard]] std::int64_t Length() const noexcept;

  // Waits until the bytes would survive a power cut; false when that cannot be promised.
  bool Flush() noexcept;

  // The open file's own time, also after it was renamed. A time that was set holds until the next Write.
  [[nodiscard]] bool GetLastWriteTime(FileTime& time) const noexcept;
  bool SetLastWriteTime(FileTime time) noexcept;

  // False when the system reports an error that was held back until now. Closing twice does nothing.
  bool Close() noexcept;

 private:
  friend class ReplacementFile;
  friend bool CopyFileOver(const char* source, const char* target) noexcept;
  static constexpr std::intptr_t kNoHandle = -1;
  void Swap(FileStream& other) noexcept {
    std::swap(handle_, other.handle_);
    std::swap(position_, other.position_);
  }

  std::intptr_t handle_ = kNoHandle;
  std::int64_t position_ = 0;
};

// A file that takes the place of another only when it is whole: written beside the final name under a name of its own,
// and put in place by Commit. Until then, and after any failure or a kill, the old file is there unchanged, and a stream
// that is open on the old file goes on reading the old bytes.
class ReplacementFile {
 public:
  ReplacementFile() noexcept = default;
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;
  ~ReplacementFile() { Discard(); }

  // False, and nothing is created, when the folder is missing or cannot be written in, or when the final name is taken
  // by a folder or a read-only file.
  [[nodiscard]] bool Begin(const char* path) noexcept;

  // A failed write is remembered: Commit then fails.
  void Write(const void* bytes, std::int64_t byteCount) noexcept {
    failed_ = failed_ || !stream_.Write(bytes, byteCount);
  }

  // True when every Write so far reached the system; lets a long writer stop early.
  [[nodiscard]] bool IsWhole() const noexcept { return stream_.IsOpen() && !failed_; }

  enum class Durability {
    Cached,  // survives a kill; for what can be made again
    Synced,  // survives a power cut; for what the learner made
  };

  // True when the new file is in place. On false the old one is, and nothing else is left.
  [[nodiscard]] bool Commit(Durability durability) noexcept;
  void Discard() noexcept;

 private:
  friend bool CopyFileOver(const char* source, const char* target) noexcept;
  static constexpr std::size_t kMaxNativePath = 4096;
  FileStream stream_;
  std::intptr_t folder_ = -1;  // the back end's own
  bool failed_ = false;
  std::array<char, kMaxNativePath> finalName_{};      // in the back end's own form
  std::array<char, kMaxNativePath> temporaryName_{};  // empty while the file has no name
};

// True when a directory search for the path finds an entry: a file, a folder or a match of "*" and "?". False for an
// empty path and for one that ends in a separator.
[[nodiscard]] bool EntryExists(const char* path) noexcept;

// True when both paths lead to the same existing file, however they are spelled.
[[nodiscard]] bool IsSameFile(const char* left, const char* right) noexcept;

// Copies content, last-write time and the read-only mark over the target, which is replaced whole or not at all.
// False: source missing or a folder; target a folder, read-only or the source itself; disk full.
bool CopyFileOver(const char* source, const char* target) noexcept;

// Puts source in the place of target, which keeps its access rights: at one stroke where both lie on one file system, else
// through CopyFileOver. The new content survives a power cut. False, with both files as they were: source missing, target
// a folder, read-only or the source itself, disk full.
bool MoveFileOver(const char* source, const char* target) noexcept;

// Renames; false when the target exists (unless it is the source under another spelling) or the source is missing.
bool MoveFileTo(const char* source, const char* target) noexcept;

// False when the file is missing, read-only or a folder.
bool RemoveFile(const char* path) noexcept;

// Takes away the read-only mark (and on Windows the hidden and system marks).
bool ResetAttributes(const char* path) noexcept;

// By path, for files that nobody has open.
[[nodiscard]] bool GetLastWriteTime(const char* path, FileTime& time) noexcept;
bool SetLastWriteTime(const char* path, FileTime time) noexcept;

// The entries that match a pattern, "." and ".." first where the pattern matches them, then by name without regard to
// case. "*.*" matches names without a dot too.
class DirectorySearch {
 public:
  explicit DirectorySearch(const char* pattern) noexcept;
  DirectorySearch(const DirectorySearch&) = delete;
  DirectorySearch& operator=(const DirectorySearch&) = delete;
  ~DirectorySearch();

  // Null when there are no more entries; else the entry's name in its stored spelling, valid until the next call.
  const char* Next() noexcept;

 private:
  void* search_ = nullptr;  // the back end's own record
  std::array<char, kMaxEntryName + 1> name_{};
};

enum class DriveKind { None, Fixed, CdRom };

// The kind of a drive by index, 0 for A: to 25 for Z:; None outside that range.
[[nodiscard]] DriveKind GetDriveKind(int driveIndex) noexcept;

}  // namespace tavimo::platform
