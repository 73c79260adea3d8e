// Drive letters on a system that has none: which native folder each letter stands for. GetDriveKind of files.h answers
// from here.
//
// C: is "/". D: and on go to the CD-ROM mounts, in the order of the mount table. The environment variable TAVIMO_DRIVES
// gives letters by hand: entries "LETTER=FOLDER" or "LETTER=cdrom:FOLDER" with absolute folders, separated by ";", for
// example "D=/media/lessons;E=cdrom:/mnt/disc"; entries of another form are passed over. MapDrive comes before both.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace tavimo::platform {

inline constexpr int kDriveCount = 26;

// The table as a value; the process has one of its own, which is filled at the first question about a drive and looks at
// the mounts again when it is asked for a drive's kind.
class DriveMap {
 public:
  struct Drive {
    DriveKind kind = DriveKind::None;
    std::string folder;      // absolute, without a slash at its end; "" for "/"
    bool isMounted = false;  // the letter came from the mount table, and goes with the mount
  };

  // Reads a mount table in the form of /proc/self/mountinfo; a missing one has no mounts.
  DriveMap(const char* mountTablePath, std::string_view environment);

  // Reads the mount table again: a disc put in meanwhile gets the first free letter from D: on, one taken out loses its
  // letter, the others keep theirs.
  void ReadMounts(const char* mountTablePath);

  // An empty folder takes the letter away (C: then is "/" again). REQUIRES: 0 <= driveIndex < kDriveCount.
  void Map(int driveIndex, std::string_view folder, DriveKind kind);

  [[nodiscard]] const Drive& At(int driveIndex) const { return drives_[static_cast<std::size_t>(driveIndex)]; }

  // The index of the drive with the longest folder that contains an absolute path; -1 when none does.
  [[nodiscard]] int Containing(std::string_view nativePath) const;

 private:
  void ReadEnvironment(std::string_view environment);
  [[nodiscard]] int DiscAt(std::string_view folder) const;

  std::array<Drive, kDriveCount> drives_;
};

// Questions to the process's own map; safe from any thread.

// The folder of a drive without a slash at its end; nothing when the letter has none.
[[nodiscard]] std::optional<std::string> DriveFolder(int driveIndex);

struct DriveOfPath {
  int driveIndex = -1;
  std::size_t folderLength = 0;  // how many bytes of the path the letter stands for
};
[[nodiscard]] DriveOfPath FindDriveOf(std::string_view nativePath);

// Gives a letter (0 for A: to 25 for Z:) a native folder and a kind, Fixed or CdRom; a null folder takes it away. False
// when the index or kind is another or the folder is not an absolute path to a folder.
bool MapDrive(int driveIndex, const char* nativeFolder, DriveKind kind) noexcept;

}  // namespace tavimo::platform
