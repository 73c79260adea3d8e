// The drive map: read from the environment and the mount table, changed by MapDrive. Turning paths is native_path.cpp.
#include "platform/linux/drives.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <sstream>

#include "platform/linux/native_path.h"

namespace tavimo::platform {

namespace {

constexpr int kDriveC = 2;
constexpr int kDriveD = 3;

int DriveIndex(char letter) {
  const char folded = FoldedLetter(letter);
  return folded >= 'A' && folded <= 'Z' ? folded - 'A' : -1;
}

std::string_view WithoutEndSlashes(std::string_view folder) {
  while (!folder.empty() && folder.back() == '/') folder.remove_suffix(1);
  return folder;
}

// A mount table writes blanks and backslashes as a backslash and three octal digits.
std::string Unescaped(std::string_view text) {
  const auto isOctal = [](char digit) { return digit >= '0' && digit <= '7'; };
  std::string plain;
  while (!text.empty()) {
    const bool isEscape = text[0] == '\\' && text.size() > 3 && std::all_of(&text[1], &text[1] + 3, isOctal);
    plain += isEscape ? static_cast<char>((text[1] - '0') * 64 + (text[2] - '0') * 8 + (text[3] - '0')) : text[0];
    text.remove_prefix(isEscape ? 4 : 1);
  }
  return plain;
}

// The mount point of a line when a disc is mounted there, else an empty string. A line: id, parent, major:minor, root,
// mount point, options, optional fields, "-", type, source, options. Optical drives have the major number 11; the types
// catch a disc's image on another device.
std::string DiscMountPoint(const std::string& line) {
  const std::size_t dash = line.find(" - ");
  if (dash == std::string::npos) return {};
  std::istringstream mount(line.substr(0, dash));
  std::istringstream source(line.substr(dash + 3));
  std::string id, parent, device, root, point, type;
  mount >> id >> parent >> device >> root >> point;
  source >> type;
  const bool isDisc = device.starts_with("11:") || type == "iso9660" || type == "udf" || type == "fuse.fuseiso";
  return isDisc ? Unescaped(point) : std::string();
}

constexpr const char* kMountTable = "/proc/self/mountinfo";

struct ProcessDrives {
  std::mutex mutex;
  DriveMap map;
};

// Never destroyed: a worker may still open files while the process ends.
ProcessDrives& Process() {
  const auto make = [] {
    const char* environment = std::getenv("TAVIMO_DRIVES");
    return new ProcessDrives{{}, DriveMap(kMountTable, environment ? environment : "")};
  };
  static ProcessDrives& drives = *make();
  return drives;
}

}  // namespace

DriveMap::DriveMap(const char* mountTablePath, std::string_view environment) {
  drives_[kDriveC].kind = DriveKind::Fixed;
  ReadEnvironment(environment);
  ReadMounts(mountTablePath);
}

void DriveMap::ReadEnvironment(std::string_view environment) {
  while (!environment.empty()) {
    std::string_view entry = environment.substr(0, environment.find(';'));
    environment.remove_prefix(std::min(entry.size() + 1, environment.size()));
    if (entry.size() < 3 || entry[1] != '=') continue;
    const int driveIndex = DriveIndex(entry[0]);
    entry.remove_prefix(2);
    const bool isDisc = entry.starts_with("cdrom:");
    if (isDisc) entry.remove_prefix(std::string_view("cdrom:").size());
    if (driveIndex >= 0 && entry.starts_with('/')) Map(driveIndex, entry, isDisc ? DriveKind::CdRom : DriveKind::Fixed);
  }
}

void DriveMap::ReadMounts(const char* mountTablePath) {
  std::array<bool, kDriveCount> isStillMounted{};
  std::ifstream table(mountTablePath);
  for (std::string line; std::getline(table, line);) {
    const std::string point = DiscMountPoint(line);
    if (point.empty()) continue;
    int driveIndex = DiscAt(WithoutEndSlashes(point));
    if (driveIndex < 0) {
      driveIndex = kDriveD;
      while (driveIndex < kDriveCount && At(driveIndex).kind != DriveKind::None) ++driveIndex;
      if (driveIndex == kDriveCount) continue;
      Map(driveIndex, point, DriveKind::CdRom);
      drives_[static_cast<std::size_t>(driveIndex)].isMounted = true;
    }
    isStillMounted[static_cast<std::size_t>(driveIndex)] = true;
  }
  for (std::size_t i = 0; i < drives_.size(); ++i) {
    if (drives_[i].isMounted && !isStillMounted[i]) Map(static_cast<int>(i), {}, DriveKind::None);
  }
}

int DriveMap::DiscAt(std::string_view folder) const {
  const auto found = std::find_if(drives_.begin(), drives_.end(),
                                  [&](const Drive& drive) { return drive.isMounted && drive.folder == folder; });
  return found == drives_.end() ? -1 : static_cast<int>(found - drives_.begin());
}

void DriveMap::Map(int driveIndex, std::string_view folder, DriveKind kind) {
  Drive& drive = drives_[static_cast<std::size_t>(driveIndex)];
  drive.folder = WithoutEndSlashes(folder);
  drive.isMounted = false;
  drive.kind = !folder.empty() ? kind : driveIndex == kDriveC ? DriveKind::Fixed : DriveKind::None;
}

int DriveMap::Containing(std::string_view nativePath) const {
  int best = -1;
  for (int i = 0; i < kDriveCount; ++i) {
    const Drive& drive = At(i);
    if (drive.kind == DriveKind::None || !nativePath.starts_with(drive.folder)) continue;
    const std::string_view rest = nativePath.substr(drive.folder.size());
    if (!rest.empty() && rest[0] != '/') continue;
    if (best < 0 || drive.folder.size() > At(best).folder.size()) best = i;
  }
  return best;
}

std::optional<std::string> DriveFolder(int driveIndex) {
  if (driveIndex < 0 || driveIndex >= kDriveCount) return std::nullopt;
  ProcessDrives& process = Process();
  const std::lock_guard lock(process.mutex);
  const DriveMap::Drive& drive = process.map.At(driveIndex);
  if (drive.kind == DriveKind::None) return std::nullopt;
  return drive.folder;
}

DriveOfPath FindDriveOf(std::string_view nativePath) {
  ProcessDrives& process = Process();
  const std::lock_guard lock(process.mutex);
  const int driveIndex = process.map.Containing(nativePath);
  if (driveIndex < 0) return {};
  return {driveIndex, process.map.At(driveIndex).folder.size()};
}

bool MapDrive(int driveIndex, const char* nativeFolder, DriveKind kind) noexcept try {
  if (driveIndex < 0 || driveIndex >= kDriveCount) return false;
  const std::string_view folder = nativeFolder == nullptr ? "" : nativeFolder;
  if (nativeFolder != nullptr) {
    struct stat status {};
    const bool isKind = kind == DriveKind::Fixed || kind == DriveKind::CdRom;
    if (!isKind || !folder.starts_with('/')) return false;
    if (stat(nativeFolder, &status) != 0 || !S_ISDIR(status.st_mode)) return false;
  }
  ProcessDrives& process = Process();
  const std::lock_guard lock(process.mutex);
  process.map.Map(driveIndex, folder, kind);
  return true;
} catch (...) {
  return false;
}

DriveKind GetDriveKind(int driveIndex) noexcept try {
  if (driveIndex < 0 || driveIndex >= kDriveCount) return DriveKind::None;
  ProcessDrives& process = Process();
  const std::lock_guard lock(process.mutex);
  process.map.ReadMounts(kMountTable);
  return process.map.At(driveIndex).kind;
} catch (...) {
  return DriveKind::None;
}

}  // namespace tavimo::platform
