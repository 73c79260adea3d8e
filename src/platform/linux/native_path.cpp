// Decoding, drive letters, and the search for a name that is spelled in another case. Drives themselves are drives.cpp.
#include "platform/linux/native_path.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

#include "platform/linux/drives.h"
#include "platform/text.h"

namespace tavimo::platform {

namespace {

bool HasDriveLetter(std::string_view path) {
  return path.size() >= 2 && path[1] == ':' && FoldedLetter(path[0]) >= 'A' && FoldedLetter(path[0]) <= 'Z';
}

bool IsThere(const std::string& nativePath) {
  struct stat status {};
  return lstat(nativePath.c_str(), &status) == 0;
}

// The path in UTF-8 with slashes, its drive letter still in front.
std::optional<std::string> Decoded(const char* enginePath) {
  if (enginePath == nullptr || *enginePath == '\0') return std::nullopt;
  const std::string_view gbk = enginePath;
  std::string path(gbk.size() * 3 + 1, '\0');
  const int byteCount = Utf8FromGbk(gbk, path.data(), path.size());
  if (byteCount < 0) return std::nullopt;
  path.resize(static_cast<std::size_t>(byteCount));
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

// A path below a root that is taken as it is: a drive's folder, or nothing.
struct RootedPath {
  std::string path;
  std::size_t rootLength = 0;
};

std::optional<RootedPath> Rooted(const char* enginePath) {
  std::optional<std::string> path = Decoded(enginePath);
  if (!path || !HasDriveLetter(*path)) return path ? std::optional(RootedPath{std::move(*path), 0}) : std::nullopt;
  std::optional<std::string> folder = DriveFolder(FoldedLetter((*path)[0]) - 'A');
  if (!folder) return std::nullopt;
  const std::size_t rest = std::min(path->find_first_not_of('/', 2), path->size());
  const std::size_t rootLength = folder->size() + 1;
  return RootedPath{*folder + '/' + path->substr(rest), rootLength};
}

bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return FoldedLetter(a) == FoldedLetter(b); });
}

// The name of an entry that differs only in case; empty when there is none.
std::string StoredName(const std::string& folder, std::string_view name) {
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.empty() ? "." : folder.c_str()), closedir);
  if (!listing) return {};
  std::string stored;
  while (const dirent* entry = readdir(listing.get())) {
    if (!EqualsIgnoringCase(entry->d_name, name)) continue;
    if (stored.empty() || stored > entry->d_name) stored = entry->d_name;
  }
  return stored;
}

// Most paths exist as spelled: one question to the system, no listing. Otherwise each component is asked for in turn,
// and a folder is listed only where one is missing.
std::string WithStoredNames(const RootedPath& rooted) {
  const std::string& path = rooted.path;
  if (IsThere(path)) return path;
  std::string found = path.substr(0, rooted.rootLength);
  for (std::size_t start = found.size(); start < path.size();) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    std::string name = path.substr(start, end - start);
    if (!name.empty() && !IsThere(found + name)) {
      name = StoredName(found, name);
      if (name.empty()) return found + path.substr(start);
    }
    found += name;
    if (end < path.size()) found += '/';
    start = end + 1;
  }
  return found;
}

}  // namespace

std::optional<std::string> NativePath(const char* enginePath) noexcept try {
  const std::optional<RootedPath> rooted = Rooted(enginePath);
  if (!rooted) return std::nullopt;
  return WithStoredNames(*rooted);
} catch (...) {
  return std::nullopt;
}

std::optional<NativeLocation> LocateNative(const char* enginePath) noexcept try {
  std::optional<RootedPath> rooted = Rooted(enginePath);
  if (!rooted) return std::nullopt;
  const std::size_t slash = rooted->path.rfind('/');
  if (slash == std::string::npos) return NativeLocation{".", rooted->path};
  std::string name = rooted->path.substr(slash + 1);
  rooted->path.resize(std::max<std::size_t>(slash, 1));
  rooted->rootLength = std::min(rooted->rootLength, rooted->path.size());
  return NativeLocation{WithStoredNames(*rooted), std::move(name)};
} catch (...) {
  return std::nullopt;
}

std::optional<std::string> EnginePath(std::string_view nativePath) noexcept try {
  if (nativePath.empty() || nativePath.find('\\') != std::string_view::npos) return std::nullopt;
  std::string path;
  if (nativePath[0] == '/') {
    const DriveOfPath drive = FindDriveOf(nativePath);
    if (drive.driveIndex >= 0) path = {static_cast<char>('A' + drive.driveIndex), ':'};
    nativePath.remove_prefix(drive.folderLength);
    if (nativePath.empty()) nativePath = "/";
  } else if (HasDriveLetter(nativePath)) {
    path = "./";  // a name here, not a drive
  }
  path += nativePath;
  std::replace(path.begin(), path.end(), '/', '\\');
  std::string gbk(path.size() + 1, '\0');
  const int byteCount = GbkFromUtf8(path, gbk.data(), gbk.size());
  if (byteCount < 0) return std::nullopt;
  gbk.resize(static_cast<std::size_t>(byteCount));
  return gbk;
} catch (...) {
  return std::nullopt;
}

}  // namespace tavimo::platform
