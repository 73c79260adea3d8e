// Implements window_titles.h with flock(). Which windows there are in this process is kept in window_table.h.
#include "platform/linux/window_titles.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include "platform/text.h"

namespace tavimo::platform {

namespace {

struct LetterRange {
  unsigned char lead;  // 0 for characters of one byte
  unsigned char firstUpper;
  unsigned char lastUpper;
  unsigned char toLower;  // added to the last byte
};
constexpr std::array<LetterRange, 4> kLetterRanges{{
    {0, 'A', 'Z', 0x20},
    {0xA3, 0xC1, 0xDA, 0x20},  // full-width Latin
    {0xA6, 0xA1, 0xB8, 0x20},  // Greek
    {0xA7, 0xA1, 0xC1, 0x30},  // Cyrillic
}};

unsigned char FoldLastByte(unsigned char lead, unsigned char byte) noexcept {
  for (const LetterRange& range : kLetterRanges) {
    if (range.lead == lead && byte >= range.firstUpper && byte <= range.lastUpper) {
      return static_cast<unsigned char>(byte + range.toLower);
    }
  }
  return byte;
}

void AppendHex(std::string& text, std::uint64_t value, int digits) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) text += "0123456789abcdef"[value >> shift & 15];
}

// Any title makes a safe file name: its bytes in hex, or for a long one those of its start and a hash of the whole.
std::string FileNameOf(std::string_view foldedTitle) {
  constexpr std::size_t kMaxPlainBytes = 100;
  constexpr std::uint64_t kFnvOffset = 0xCBF29CE484222325;
  constexpr std::uint64_t kFnvPrime = 0x100000001B3;
  std::string name;
  for (const char byte : foldedTitle.substr(0, kMaxPlainBytes)) AppendHex(name, static_cast<unsigned char>(byte), 2);
  if (foldedTitle.size() <= kMaxPlainBytes) return name;
  std::uint64_t hash = kFnvOffset;
  for (const char byte : foldedTitle) hash = (hash ^ static_cast<unsigned char>(byte)) * kFnvPrime;
  name += '-';
  AppendHex(name, hash, 16);
  return name;
}

// The folder below parent, made if need be; not open when it is not the user's own or open to others.
Descriptor OpenPrivateFolder(const std::string& parent) {
  const std::string folder = parent + "/tavimo-windows";
  ::mkdir(folder.c_str(), 0700);
  Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status {};
  const bool isPrivate = descriptor.IsOpen() && ::fstat(descriptor.Get(), &status) == 0 &&
                         status.st_uid == ::geteuid() && (status.st_mode & 077) == 0;
  return isPrivate ? std::move(descriptor) : Descriptor();
}

std::string AbsoluteFolderFrom(const char* variable) {
  const char* value = std::getenv(variable);
  return value && value[0] == '/' ? value : "";
}

Descriptor OpenTitleFolder() {
  // A program started without the variable (from a timer, over a remote shell) must still meet those that have it.
  std::string runtime = AbsoluteFolderFrom("XDG_RUNTIME_DIR");
  if (runtime.empty()) runtime = "/run/user/" + std::to_string(::geteuid());
  if (Descriptor folder = OpenPrivateFolder(runtime); folder.IsOpen()) return folder;
  std::string cache = AbsoluteFolderFrom("XDG_CACHE_HOME");
  if (cache.empty()) {
    const std::string home = AbsoluteFolderFrom("HOME");
    if (home.empty()) return Descriptor();
    cache = home + "/.cache";
  }
  ::mkdir(cache.c_str(), 0700);
  return OpenPrivateFolder(cache);
}

// Somebody who asks holds the file alone for some microseconds; only a lock that outlives the tries belongs to a window.
bool LockFile(int file, int operation) noexcept {
  constexpr int kTries = 5;
  constexpr useconds_t kPauseUs = 300;
  for (int attempt = 0; attempt < kTries; ++attempt) {
    if (attempt > 0) ::usleep(kPauseUs);
    if (::flock(file, operation | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK) return false;
  }
  return false;
}

bool HasName(int file) noexcept {
  struct stat status {};
  return ::fstat(file, &status) == 0 && status.st_nlink > 0;
}

// Takes the name of a file that no window holds. A file that has no name any more is left alone: the name may belong to
// a newer one.
void RemoveUnheld(int folder, const std::string& name, int lockedFile) noexcept {
  if (HasName(lockedFile)) ::unlinkat(folder, name.c_str(), 0);
}

}  // namespace

std::string FoldTitle(std::string_view title) {
  std::string folded(title);
  for (std::size_t i = 0; i < folded.size(); ++i) {
    unsigned char lead = 0;
    if (IsLeadByte(folded[i]) && i + 1 < folded.size()) lead = static_cast<unsigned char>(folded[i++]);
    folded[i] = static_cast<char>(FoldLastByte(lead, static_cast<unsigned char>(folded[i])));
  }
  return folded;
}

// A file can lose its name to RemoveUnheld between being opened and being locked; nobody would find the title there.
void PublishedTitle::Publish(const std::string& foldedTitle) {
  fileName_ = FileNameOf(foldedTitle);
  folder_ = OpenTitleFolder();
  constexpr int kTries = 20;
  for (int attempt = 0; folder_.IsOpen() && attempt < kTries; ++attempt) {
    Descriptor file(
        ::openat(folder_.Get(), fileName_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
    if (!file.IsOpen()) return;
    if (!LockFile(file.Get(), LOCK_SH) || !HasName(file.Get())) continue;
    file_ = std::move(file);
    return;
  }
}

PublishedTitle::~PublishedTitle() {
  if (!file_.IsOpen()) return;
  if (::flock(file_.Get(), LOCK_EX | LOCK_NB) == 0) RemoveUnheld(folder_.Get(), fileName_, file_.Get());
}

bool IsTitlePublished(const std::string& foldedTitle) {
  const Descriptor folder = OpenTitleFolder();
  if (!folder.IsOpen()) return false;
  const std::string name = FileNameOf(foldedTitle);
  const Descriptor file(::openat(folder.Get(), name.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (!file.IsOpen()) return false;
  if (!LockFile(file.Get(), LOCK_EX)) return errno == EWOULDBLOCK;
  RemoveUnheld(folder.Get(), name, file.Get());  // left by a process that was killed
  return false;
}

}  // namespace tavimo::platform
