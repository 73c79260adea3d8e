// Byte streams, and what is done to files by name, over the wide functions. Writing a file beside its final name is
// replacement_file_win32.cpp, searching folders directory_search_win32.cpp.
#include "platform/files.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>

#include "platform/common/guarded.h"
#include "platform/file_faults.h"
#include "platform/win32/file_calls.h"
#include "platform/win32/wide_text.h"

namespace tavimo::platform {

namespace {

// A file that is only read gives way to its replacement, and is read to its end all the same; one that is written to
// cannot be removed under its writer.
HANDLE OpenHandle(const std::wstring& path, OpenMode mode) {
  const bool isRead = mode == OpenMode::Read;
  if (!isRead && IsFolderOrReadOnly(path)) return INVALID_HANDLE_VALUE;
  const DWORD access = isRead ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE;
  const DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | (isRead ? FILE_SHARE_DELETE : 0);
  // An existing file keeps its attributes: it is emptied afterwards.
  const DWORD disposition = mode == OpenMode::Create ? OPEN_ALWAYS : OPEN_EXISTING;
  HANDLE handle = CreateFileW(path.c_str(), access, share, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return handle;
  // Devices have names in every folder.
  const bool isFile = GetFileType(handle) == FILE_TYPE_DISK;
  if (isFile && (mode != OpenMode::Create || SetEndOfFile(handle))) return handle;
  CloseHandle(handle);
  return INVALID_HANDLE_VALUE;
}

OVERLAPPED At(std::int64_t position) {
  OVERLAPPED place{};
  place.Offset = static_cast<DWORD>(position & 0xFFFFFFFF);
  place.OffsetHigh = static_cast<DWORD>(position >> 32);
  return place;
}

// Moves bytes in pieces that the system takes, until all are moved, nothing comes any more or a call fails. move answers
// how many bytes it moved, or -1.
template <class Mover>
std::int64_t MoveAll(std::int64_t byteCount, bool& failed, Mover move) {
  constexpr std::int64_t kMostAtOnce = std::int64_t{1} << 30;
  std::int64_t moved = 0;
  while (moved < byteCount) {
    const std::int64_t count = move(moved, static_cast<DWORD>(std::min(byteCount - moved, kMostAtOnce)));
    failed = count < 0;
    if (count <= 0) break;
    moved += count;
  }
  return moved;
}

std::int64_t ReadAt(HANDLE handle, std::int64_t position, void* buffer, DWORD byteCount) {
  OVERLAPPED place = At(position);
  DWORD count = 0;
  if (ReadFile(handle, buffer, byteCount, &count, &place)) return count;
  return GetLastError() == ERROR_HANDLE_EOF ? 0 : -1;
}

std::int64_t WriteAt(HANDLE handle, std::int64_t position, const void* bytes, DWORD byteCount) {
  OVERLAPPED place = At(position);
  DWORD count = 0;
  return WriteFile(handle, bytes, byteCount, &count, &place) ? std::int64_t{count} : -1;
}

// Opened for what is known of a file or folder, and for nothing in it.
class NamedEntry {
 public:
  NamedEntry(const char* path, DWORD access) noexcept
      : handle_(Guarded(INVALID_HANDLE_VALUE, [&] { return OpenNamed(path, access); })) {}
  NamedEntry(const NamedEntry&) = delete;
  NamedEntry& operator=(const NamedEntry&) = delete;
  ~NamedEntry() {
    if (IsOpen()) CloseHandle(handle_);
  }

  [[nodiscard]] bool IsOpen() const noexcept { return handle_ != INVALID_HANDLE_VALUE; }
  [[nodiscard]] HANDLE Handle() const noexcept { return handle_; }
  [[nodiscard]] bool GetInformation(BY_HANDLE_FILE_INFORMATION& information) const noexcept {
    return IsOpen() && GetFileInformationByHandle(handle_, &information);
  }

 private:
  static HANDLE OpenNamed(const char* path, DWORD access) {
    const std::optional<std::wstring> wide = WidePath(path);
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    if (!wide) return INVALID_HANDLE_VALUE;
    // Without the flag folders cannot be opened.
    return CreateFileW(wide->c_str(), access, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  }

  HANDLE handle_;
};

// The name is free at once, also while somebody reads the file: it steps aside then, and goes with its last reader.
bool Remove(const std::wstring& fullPath) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  if (HANDLE file = CreateFileW(fullPath.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
      file != INVALID_HANDLE_VALUE) {
    CloseHandle(file);
    return DeleteFileW(fullPath.c_str()) != 0;
  }
  HANDLE file = CreateFileW(fullPath.c_str(), DELETE, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool isAside = RenameByHandle(file, NameBeside(fullPath, L"old"), RenameKind::ToFreeName);
  if (isAside) MarkForDeletion(file, TRUE);
  CloseHandle(file);
  return isAside;
}

// The system has another meaning for 0 and -1.
bool SetTime(HANDLE handle, FileTime time) {
  if (time.value <= 0) return false;
  const FILETIME lastWrite = FiletimeFrom(time.value);
  return SetFileTime(handle, nullptr, nullptr, &lastWrite) != 0;
}

}  // namespace

FileStream FileStream::Open(const char* path, OpenMode mode) noexcept {
  FileStream stream;
  stream.handle_ = Guarded(kNoHandle, [&] {
    const std::optional<std::wstring> wide = WidePath(path);
    return wide && !NextFileOperationFails() ? Stored(OpenHandle(*wide, mode)) : kNoHandle;
  });
  return stream;
}

std::int64_t FileStream::Read(void* buffer, std::int64_t byteCount) noexcept {
  const FileFault fault = NextFileFault();
  if (!IsOpen() || byteCount < 0 || fault == FileFault::Fails) return -1;
  if (fault == FileFault::EndsEarly) byteCount /= 2;
  bool failed = false;
  const std::int64_t moved = MoveAll(byteCount, failed, [&](std::int64_t done, DWORD rest) {
    return ReadAt(HandleOf(handle_), position_ + done, static_cast<char*>(buffer) + done, rest);
  });
  if (failed) return -1;
  position_ += moved;
  return moved;
}

bool FileStream::Write(const void* bytes, std::int64_t byteCount) noexcept {
  const bool isFault = NextFileOperationFails();
  if (!IsOpen() || byteCount < 0) return false;
  bool failed = false;
  const std::int64_t wanted = isFault ? byteCount / 2 : byteCount;
  const std::int64_t moved = MoveAll(wanted, failed, [&](std::int64_t done, DWORD rest) {
    return WriteAt(HandleOf(handle_), position_ + done, static_cast<const char*>(bytes) + done, rest);
  });
  position_ += moved;
  return !isFault && moved == byteCount;
}

std::int64_t FileStream::CopyFrom(FileStream& source, std::int64_t byteCount) noexcept {
  const bool isFault = NextFileOperationFails();
  if (!IsOpen() || !source.IsOpen() || byteCount < 0) return -1;
  // A fault leaves half of the bytes, as a disk that fills up does.
  std::int64_t left = isFault ? std::min(byteCount, source.Length()) / 2 : byteCount;
  const std::int64_t begin = position_;
  char bytes[64 * 1024];
  while (left > 0) {
    const std::int64_t got = source.Read(bytes, std::min<std::int64_t>(left, sizeof bytes));
    if (got < 0 || !Write(bytes, got)) return -1;
    if (got == 0) break;
    left -= got;
  }
  return isFault ? -1 : position_ - begin;
}

std::int64_t FileStream::Seek(std::int64_t offset, SeekFrom origin) noexcept {
  const std::int64_t base = origin == SeekFrom::Start ? 0 : origin == SeekFrom::Current ? position_ : Length();
  std::int64_t position = 0;
  if (!IsOpen() || base < 0 || __builtin_add_overflow(base, offset, &position) || position < 0) return -1;
  position_ = position;
  return position_;
}

std::int64_t FileStream::Length() const noexcept {
  LARGE_INTEGER length{};
  return IsOpen() && GetFileSizeEx(HandleOf(handle_), &length) ? length.QuadPart : -1;
}

bool FileStream::Flush() noexcept {
  return IsOpen() && !NextFileOperationFails() && FlushFileBuffers(HandleOf(handle_));
}

bool FileStream::GetLastWriteTime(FileTime& time) const noexcept {
  FILETIME lastWrite{};
  if (!IsOpen() || !GetFileTime(HandleOf(handle_), nullptr, nullptr, &lastWrite)) return false;
  time.value = TicksFrom(lastWrite);
  return true;
}

bool FileStream::SetLastWriteTime(FileTime time) noexcept {
  return IsOpen() && !NextFileOperationFails() && SetTime(HandleOf(handle_), time);
}

bool FileStream::Close() noexcept {
  if (!IsOpen()) return true;
  const bool fails = NextFileOperationFails();
  const bool closed = CloseHandle(HandleOf(handle_)) != 0;
  handle_ = kNoHandle;
  position_ = 0;
  return closed && !fails;
}

bool IsSameFile(const char* left, const char* right) noexcept {
  const NamedEntry leftEntry(left, 0);
  const NamedEntry rightEntry(right, 0);
  BY_HANDLE_FILE_INFORMATION a{};
  BY_HANDLE_FILE_INFORMATION b{};
  return leftEntry.GetInformation(a) && rightEntry.GetInformation(b) &&
         a.dwVolumeSerialNumber == b.dwVolumeSerialNumber && a.nFileIndexHigh == b.nFileIndexHigh &&
         a.nFileIndexLow == b.nFileIndexLow;
}

bool CopyFileOver(const char* source, const char* target) noexcept {
  FileStream from = FileStream::Open(source, OpenMode::Read);
  BY_HANDLE_FILE_INFORMATION original{};
  if (!from.IsOpen() || !GetFileInformationByHandle(HandleOf(from.handle_), &original)) return false;
  if (IsSameFile(source, target)) return false;
  // What replaces something must survive a power cut; a plain copy still has its source.
  const auto durability =
      EntryExists(target) ? ReplacementFile::Durability::Synced : ReplacementFile::Durability::Cached;
  ReplacementFile copy;
  if (!copy.Begin(target)) return false;
  if (copy.stream_.CopyFrom(from, std::numeric_limits<std::int64_t>::max()) < 0) return false;
  if (!copy.stream_.SetLastWriteTime({TicksFrom(original.ftLastWriteTime)})) return false;
  if (!copy.Commit(durability)) return false;
  // Last, because a file with the mark cannot be renamed over another.
  if ((original.dwFileAttributes & FILE_ATTRIBUTE_READONLY) == 0) return true;
  return Guarded(true, [&] {
    SetFileAttributesW(WidePath(target).value_or(L"").c_str(), FILE_ATTRIBUTE_READONLY);
    return true;
  });
}

bool MoveFileTo(const char* source, const char* target) noexcept {
  return Guarded(false, [&] {
    const std::optional<std::wstring> from = WidePath(source);
    const std::optional<std::wstring> to = WidePath(target);
    return from && to && !NextFileOperationFails() && MoveFileExW(from->c_str(), to->c_str(), MOVEFILE_COPY_ALLOWED);
  });
}

bool RemoveFile(const char* path) noexcept {
  return Guarded(false, [&] {
    const std::optional<std::wstring> full = FullPath(path);
    return full && !IsFolderOrReadOnly(*full) && !NextFileOperationFails() && Remove(*full);
  });
}

bool ResetAttributes(const char* path) noexcept {
  return Guarded(false, [&] {
    const std::optional<std::wstring> wide = WidePath(path);
    return wide && SetFileAttributesW(wide->c_str(), FILE_ATTRIBUTE_NORMAL);
  });
}

bool GetLastWriteTime(const char* path, FileTime& time) noexcept {
  BY_HANDLE_FILE_INFORMATION information{};
  if (!NamedEntry(path, 0).GetInformation(information)) return false;
  time.value = TicksFrom(information.ftLastWriteTime);
  return true;
}

bool SetLastWriteTime(const char* path, FileTime time) noexcept {
  const NamedEntry entry(path, FILE_WRITE_ATTRIBUTES);
  return entry.IsOpen() && !NextFileOperationFails() && SetTime(entry.Handle(), time);
}

DriveKind GetDriveKind(int driveIndex) noexcept {
  constexpr int kDriveCount = 26;
  if (driveIndex < 0 || driveIndex >= kDriveCount) return DriveKind::None;
  const wchar_t root[] = {static_cast<wchar_t>(L'A' + driveIndex), L':', L'\\', L'\0'};
  switch (GetDriveTypeW(root)) {
    case DRIVE_UNKNOWN:
    case DRIVE_NO_ROOT_DIR:
      return DriveKind::None;
    case DRIVE_CDROM:
      return DriveKind::CdRom;
    default:
      return DriveKind::Fixed;
  }
}

}  // namespace tavimo::platform
