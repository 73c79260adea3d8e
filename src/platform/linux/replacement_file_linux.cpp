// A file that takes another's place when it is whole, over POSIX. The streams and the rest of the layer are
// files_linux.cpp.
//
// Where the file system can, the new file has no name at all while it is written, so that a kill leaves nothing behind.
// Commit then gives it a temporary name in the folder and renames it over the final one. Elsewhere it has the temporary
// name from the start; one that a kill left behind is replaced by the next writer of the same file. All names are looked
// up from the folder that was opened first: the process may change its current directory meanwhile.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

#include "platform/file_faults.h"
#include "platform/files.h"
#include "platform/linux/native_path.h"
#include "platform/linux/posix_calls.h"

namespace tavimo::platform {

namespace {

constexpr std::size_t kMaxProcPath = 32;

// The folder and name of the file itself: a link keeps its place, and what it points to is replaced.
std::optional<NativeLocation> LocateFinal(const char* path) noexcept try {
  const std::optional<std::string> native = NativePath(path);
  if (!native) return std::nullopt;
  struct stat status {};
  const bool isLink = lstat(native->c_str(), &status) == 0 && S_ISLNK(status.st_mode);
  char target[PATH_MAX];
  if (isLink && realpath(native->c_str(), target) == nullptr) return std::nullopt;
  const std::string_view file = isLink ? std::string_view(target) : *native;
  const std::size_t slash = file.rfind('/');
  if (slash == std::string_view::npos) return NativeLocation{".", std::string(file)};
  return NativeLocation{std::string(file.substr(0, std::max<std::size_t>(slash, 1))),
                        std::string(file.substr(slash + 1))};
} catch (...) {
  return std::nullopt;
}

int OpenFolder(const std::string& folder) {
  // As a place only: a folder may be written in that must not be read.
  return Uninterrupted([&] { return open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); });
}

// Some file systems cannot sync a folder, and some folders must not be read; the new file is in place all the same.
void SyncFolder(int folder) {
  const int readable = Uninterrupted([&] { return openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (readable < 0) return;
  fsync(readable);
  close(readable);
}

// A name of fixed length, so that it fits where the final one does, and always the same for one final name.
void MakeTemporaryName(const char* finalName, char* temporaryName, std::size_t size) {
  std::uint32_t hash = 0x811C9DC5;  // FNV-1a
  for (const char byte : std::string_view(finalName)) hash = (hash ^ static_cast<unsigned char>(byte)) * 0x01000193;
  std::snprintf(temporaryName, size, ".tavimo-%08x.new", hash);
}

void MakeProcPath(int descriptor, char (&path)[kMaxProcPath]) {
  std::snprintf(path, sizeof path, "/proc/self/fd/%d", descriptor);
}

// A file without a name, in a form that can be given one later (which goes through /proc); -1 where there is none.
int CreateUnnamed(int folder) {
  char folderInProc[kMaxProcPath];
  MakeProcPath(folder, folderInProc);
  if (access(folderInProc, F_OK) != 0 || NextFileOperationFails()) return -1;
  return Uninterrupted([&] { return openat(folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0666); });
}

int CreateNamed(int folder, const char* name) {
  if (NextFileOperationFails()) return -1;
  unlinkat(folder, name, 0);
  return Uninterrupted([&] { return openat(folder, name, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666); });
}

bool NameUnnamed(int descriptor, int folder, const char* name) {
  char file[kMaxProcPath];
  MakeProcPath(descriptor, file);
  // Another process that writes the same file may make and rename its own between our calls.
  constexpr int kTries = 10;
  for (int attempt = 0; attempt < kTries; ++attempt) {
    if (linkat(AT_FDCWD, file, folder, name, AT_SYMLINK_FOLLOW) == 0) return true;
    if (errno != EEXIST || (unlinkat(folder, name, 0) != 0 && errno != ENOENT)) return false;
  }
  return false;
}

// Another process that writes the same file may have taken the name over; its half-written file must not be put in
// place by us.
bool IsNameOf(int descriptor, int folder, const char* name) {
  struct stat file {};
  struct stat named {};
  return fstat(descriptor, &file) == 0 && fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 &&
         file.st_dev == named.st_dev && file.st_ino == named.st_ino;
}

// The new file belongs to whom the old one did and may be read and written by the same people, as far as the process's
// rights go.
void TakeOver(int descriptor, const struct stat& old) {
  [[maybe_unused]] const int refused = fchown(descriptor, old.st_uid, old.st_gid);
  fchmod(descriptor, old.st_mode & 0777);
}

bool MayReplace(int folder, const char* name, const struct stat& old) {
  return S_ISREG(old.st_mode) && !IsReadOnly(old) && faccessat(folder, name, W_OK, AT_EACCESS) == 0;
}

// Opens the new file, with the temporary name or without one (an empty string); -1 when the final name is not to be had.
template <std::size_t Size>
int CreateBeside(int folder, const char* finalName, std::array<char, Size>& temporaryName) {
  struct stat old {};
  const bool isThere = fstatat(folder, finalName, &old, 0) == 0;
  if (isThere ? !MayReplace(folder, finalName, old) : errno != ENOENT) return -1;
  int descriptor = CreateUnnamed(folder);
  if (descriptor < 0) {
    MakeTemporaryName(finalName, temporaryName.data(), Size);
    descriptor = CreateNamed(folder, temporaryName.data());
  }
  if (descriptor < 0) temporaryName[0] = '\0';
  if (descriptor >= 0 && isThere) TakeOver(descriptor, old);
  return descriptor;
}

// Makes the temporary name that of the new file; false, and the name is empty, when that is not possible.
template <std::size_t Size>
bool TakeTemporaryName(int descriptor, int folder, const char* finalName, std::array<char, Size>& temporaryName) {
  bool isOurs = false;
  if (temporaryName[0] != '\0') {
    isOurs = IsNameOf(descriptor, folder, temporaryName.data());
  } else {
    MakeTemporaryName(finalName, temporaryName.data(), Size);
    isOurs = NameUnnamed(descriptor, folder, temporaryName.data());
  }
  if (!isOurs) temporaryName[0] = '\0';
  return isOurs;
}

}  // namespace

bool ReplacementFile::Begin(const char* path) noexcept {
  Discard();
  failed_ = false;
  const std::optional<NativeLocation> place = LocateFinal(path);
  if (!place || place->name.empty() || place->name.size() >= finalName_.size()) return false;
  place->name.copy(finalName_.data(), finalName_.size());
  finalName_[place->name.size()] = '\0';
  folder_ = OpenFolder(place->folder);
  if (folder_ >= 0) stream_.handle_ = CreateBeside(DescriptorOf(folder_), finalName_.data(), temporaryName_);
  if (!stream_.IsOpen()) Discard();
  return stream_.IsOpen();
}

bool ReplacementFile::Commit(Durability durability) noexcept {
  const int folder = DescriptorOf(folder_);
  const bool isSynced = durability == Durability::Synced;
  bool isPlaced = IsWhole() && (!isSynced || stream_.Flush()) && !NextFileOperationFails() &&
                  TakeTemporaryName(DescriptorOf(stream_.handle_), folder, finalName_.data(), temporaryName_);
  isPlaced = isPlaced && stream_.Close() && !NextFileOperationFails() &&
             renameat(folder, temporaryName_.data(), folder, finalName_.data()) == 0;
  if (isPlaced) temporaryName_[0] = '\0';
  if (isPlaced && isSynced) SyncFolder(folder);
  Discard();
  return isPlaced;
}

void ReplacementFile::Discard() noexcept {
  stream_.Close();
  if (temporaryName_[0] != '\0' && !NextFileOperationFails()) unlinkat(DescriptorOf(folder_), temporaryName_.data(), 0);
  temporaryName_[0] = '\0';
  if (folder_ >= 0) close(DescriptorOf(folder_));
  folder_ = -1;
}

bool MoveFileOver(const char* source, const char* target) noexcept try {
  const std::optional<std::string> from = NativePath(source);
  const std::optional<NativeLocation> to = LocateFinal(target);
  FileStream stream = FileStream::Open(source, OpenMode::ReadWrite);
  if (!from || !to || !stream.IsOpen() || IsSameFile(source, target) || !stream.Flush()) return false;
  stream.Close();
  const int folder = OpenFolder(to->folder);
  if (folder < 0) return false;
  struct stat old {};
  const bool isThere = fstatat(folder, to->name.c_str(), &old, 0) == 0;
  const bool mayReplace = isThere ? MayReplace(folder, to->name.c_str(), old) : errno == ENOENT;
  if (mayReplace && isThere) chmod(from->c_str(), old.st_mode & 0777);
  bool isPlaced =
      mayReplace && !NextFileOperationFails() && renameat(AT_FDCWD, from->c_str(), folder, to->name.c_str()) == 0;
  const bool isElsewhere = mayReplace && !isPlaced && errno == EXDEV;
  if (isPlaced) SyncFolder(folder);
  close(folder);
  if (isElsewhere) isPlaced = CopyFileOver(source, target) && RemoveFile(source);
  return isPlaced;
} catch (...) {
  return false;
}

}  // namespace tavimo::platform
