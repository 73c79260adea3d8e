// Byte streams, and what is done to files by name, over POSIX. Writing a file beside its final name is
// replacement_file_linux.cpp, searching folders directory_search_linux.cpp.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <optional>
#include <string>

#include "platform/file_faults.h"
#include "platform/files.h"
#include "platform/linux/native_path.h"
#include "platform/linux/posix_calls.h"

namespace tavimo::platform {

namespace {

// What a path leads to; nothing when there is no such thing.
std::optional<struct stat> StatusOf(const std::string& nativePath) {
  struct stat status {};
  return stat(nativePath.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

std::optional<struct stat> StatusOf(const char* path) {
  const std::optional<std::string> native = NativePath(path);
  return native ? StatusOf(*native) : std::nullopt;
}

bool IsSame(const struct stat& left, const struct stat& right) {
  return left.st_dev == right.st_dev && left.st_ino == right.st_ino;
}

// Asked before opening, because opening a pipe would wait and opening a device may do anything.
bool MayOpen(const std::string& nativePath, OpenMode mode) {
  const std::optional<struct stat> status = StatusOf(nativePath);
  if (!status) return mode == OpenMode::Create && errno == ENOENT;
  return S_ISREG(status->st_mode) && (mode == OpenMode::Read || !IsReadOnly(*status));
}

int OpenFlags(OpenMode mode) {
  switch (mode) {
    case OpenMode::Read:
      return O_RDONLY | O_CLOEXEC;
    case OpenMode::ReadWrite:
      return O_RDWR | O_CLOEXEC;
    case OpenMode::Create:
      return O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC;
  }
  return O_RDONLY | O_CLOEXEC;
}

// Moves bytes at a position until all are moved, nothing comes any more (0) or a call fails; how many were moved. The
// system may move fewer bytes than asked for, and moves at most 2 GiB at once.
template <typename Transfer>
std::int64_t MoveAll(std::int64_t byteCount, bool& failed, Transfer transfer) {
  std::int64_t moved = 0;
  while (moved < byteCount) {
    const ssize_t count = Uninterrupted([&] { return transfer(moved, static_cast<std::size_t>(byteCount - moved)); });
    failed = count < 0;
    if (count <= 0) break;
    moved += count;
  }
  return moved;
}

// Lets the kernel copy what it can and moves both positions; how much that was. Where it cannot, the caller goes on.
std::int64_t CopyInKernel(int source, std::int64_t& sourcePosition, int target, std::int64_t& targetPosition,
                          std::int64_t byteCount) {
  constexpr std::int64_t kMostAtOnce = std::int64_t{1} << 30;
  std::int64_t copied = 0;
  while (copied < byteCount) {
    const auto wanted = static_cast<std::size_t>(std::min(byteCount - copied, kMostAtOnce));
    const ssize_t count =
        Uninterrupted([&] { return copy_file_range(source, &sourcePosition, target, &targetPosition, wanted, 0); });
    if (count <= 0) break;
    copied += count;
  }
  return copied;
}

// File systems without the flag get the plain call; the caller has seen that the target does not exist.
bool RenameToFreeName(const std::string& source, const std::string& target) {
  if (renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  return rename(source.c_str(), target.c_str()) == 0;
}

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

timespec TimespecFrom(FileTime time) {
  const std::int64_t seconds = time.value / kNanosecondsPerSecond;
  const std::int64_t rest = time.value % kNanosecondsPerSecond;
  return rest < 0 ? timespec{seconds - 1, rest + kNanosecondsPerSecond} : timespec{seconds, rest};
}

// False for times that 64 bits of nanoseconds do not hold: before 1678 and after 2261.
bool FileTimeFrom(timespec lastWrite, FileTime& time) {
  std::int64_t value = 0;
  if (__builtin_mul_overflow(lastWrite.tv_sec, kNanosecondsPerSecond, &value)) return false;
  if (__builtin_add_overflow(value, lastWrite.tv_nsec, &value)) return false;
  time.value = value;
  return true;
}

}  // namespace

FileStream FileStream::Open(const char* path, OpenMode mode) noexcept {
  FileStream stream;
  const std::optional<std::string> native = NativePath(path);
  if (!native || !MayOpen(*native, mode) || NextFileOperationFails()) return stream;
  stream.handle_ = Uninterrupted([&] { return open(native->c_str(), OpenFlags(mode), 0666); });
  return stream;
}

std::int64_t FileStream::Read(void* buffer, std::int64_t byteCount) noexcept {
  const FileFault fault = NextFileFault();
  if (!IsOpen() || byteCount < 0 || fault == FileFault::Fails) return -1;
  if (fault == FileFault::EndsEarly) byteCount /= 2;
  bool failed = false;
  const std::int64_t moved = MoveAll(byteCount, failed, [&](std::int64_t done, std::size_t rest) {
    return pread(DescriptorOf(handle_), static_cast<char*>(buffer) + done, rest, position_ + done);
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
  const std::int64_t moved = MoveAll(wanted, failed, [&](std::int64_t done, std::size_t rest) {
    return pwrite(DescriptorOf(handle_), static_cast<const char*>(bytes) + done, rest, position_ + done);
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
  left -= CopyInKernel(DescriptorOf(source.handle_), source.position_, DescriptorOf(handle_), position_, left);
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
  struct stat status {};
  return IsOpen() && fstat(DescriptorOf(handle_), &status) == 0 ? status.st_size : -1;
}

bool FileStream::Flush() noexcept {
  return IsOpen() && !NextFileOperationFails() && fdatasync(DescriptorOf(handle_)) == 0;
}

bool FileStream::GetLastWriteTime(FileTime& time) const noexcept {
  struct stat status {};
  return IsOpen() && fstat(DescriptorOf(handle_), &status) == 0 && FileTimeFrom(status.st_mtim, time);
}

bool FileStream::SetLastWriteTime(FileTime time) noexcept {
  const timespec times[2] = {{0, UTIME_OMIT}, TimespecFrom(time)};
  return IsOpen() && !NextFileOperationFails() && futimens(DescriptorOf(handle_), times) == 0;
}

bool FileStream::Close() noexcept {
  if (!IsOpen()) return true;
  const bool fails = NextFileOperationFails();
  // Never called twice: after an interrupted call too the descriptor is free, and may be another thread's by now.
  const bool closed = close(DescriptorOf(handle_)) == 0 || errno == EINTR;
  handle_ = kNoHandle;
  position_ = 0;
  return closed && !fails;
}

bool IsSameFile(const char* left, const char* right) noexcept {
  const std::optional<struct stat> leftStatus = StatusOf(left);
  const std::optional<struct stat> rightStatus = StatusOf(right);
  return leftStatus && rightStatus && IsSame(*leftStatus, *rightStatus);
}

bool CopyFileOver(const char* source, const char* target) noexcept {
  FileStream from = FileStream::Open(source, OpenMode::Read);
  struct stat status {};
  if (!from.IsOpen() || fstat(DescriptorOf(from.handle_), &status) != 0 || IsSameFile(source, target)) return false;
  // What replaces something must survive a power cut; a plain copy still has its source.
  const auto durability =
      EntryExists(target) ? ReplacementFile::Durability::Synced : ReplacementFile::Durability::Cached;
  ReplacementFile copy;
  if (!copy.Begin(target)) return false;
  if (copy.stream_.CopyFrom(from, std::numeric_limits<std::int64_t>::max()) < 0) return false;
  const int copyDescriptor = DescriptorOf(copy.stream_.handle_);
  struct stat copyStatus {};
  if (IsReadOnly(status) && fstat(copyDescriptor, &copyStatus) == 0) {
    fchmod(copyDescriptor, copyStatus.st_mode & 07555);
  }
  const timespec times[2] = {{0, UTIME_OMIT}, status.st_mtim};
  if (NextFileOperationFails() || futimens(copyDescriptor, times) != 0) return false;
  return copy.Commit(durability);
}

bool MoveFileTo(const char* source, const char* target) noexcept try {
  const std::optional<std::string> from = NativePath(source);
  const std::optional<std::string> to = NativePath(target);
  const std::optional<NativeLocation> spelled = LocateNative(target);
  struct stat sourceStatus {};
  struct stat targetStatus {};
  if (!from || !to || !spelled || lstat(from->c_str(), &sourceStatus) != 0 || NextFileOperationFails()) return false;
  if (lstat(to->c_str(), &targetStatus) != 0) {
    if (errno == ENOENT && RenameToFreeName(*from, *to)) return true;
    // Another file system: a copy that is whole takes over, then the source goes.
    return errno == EXDEV && CopyFileOver(source, target) && unlink(from->c_str()) == 0;
  }
  // The same file under another spelling. A second name of it is another entry, which a rename would leave in place.
  const bool isOneEntry = S_ISDIR(sourceStatus.st_mode) || sourceStatus.st_nlink == 1;
  return IsSame(sourceStatus, targetStatus) && isOneEntry && rename(from->c_str(), spelled->Path().c_str()) == 0;
} catch (...) {
  return false;
}

bool RemoveFile(const char* path) noexcept {
  const std::optional<std::string> native = NativePath(path);
  if (!native) return false;
  const std::optional<struct stat> status = StatusOf(*native);
  if (status && (S_ISDIR(status->st_mode) || IsReadOnly(*status))) return false;
  return !NextFileOperationFails() && unlink(native->c_str()) == 0;
}

bool ResetAttributes(const char* path) noexcept {
  const std::optional<std::string> native = NativePath(path);
  if (!native) return false;
  const std::optional<struct stat> status = StatusOf(*native);
  if (!status || !IsReadOnly(*status)) return status.has_value();
  return chmod(native->c_str(), (status->st_mode & 07777) | S_IWUSR) == 0;
}

bool GetLastWriteTime(const char* path, FileTime& time) noexcept {
  const std::optional<struct stat> status = StatusOf(path);
  return status && FileTimeFrom(status->st_mtim, time);
}

bool SetLastWriteTime(const char* path, FileTime time) noexcept {
  const std::optional<std::string> native = NativePath(path);
  const timespec times[2] = {{0, UTIME_OMIT}, TimespecFrom(time)};
  return native && !NextFileOperationFails() && utimensat(AT_FDCWD, native->c_str(), times, 0) == 0;
}

}  // namespace tavimo::platform
