// A file that appears under its name only when it is whole: it is written beside that name and renamed into place, so
// that a kill or a full disk leaves the old one.
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>

#include "system.h"

namespace tavimo::host {

class NewFile {
 public:
  // Begins the file. A Refusal when its folder cannot be written in, or another process is writing the same file.
  explicit NewFile(const std::filesystem::path& path);
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  ~NewFile();  // without PutInPlace nothing is left

  void Write(const void* bytes, std::size_t byteCount);
  void WriteAt(std::uint64_t offset, const void* bytes, std::size_t byteCount);

  // Whether everything written so far has reached the system.
  [[nodiscard]] bool IsWhole();

  // Ends the writing; with SetTime the file then has that time. A Refusal, and the old file stays, when it is not whole
  // or cannot take its place.
  void SetTime(std::filesystem::file_time_type time) { time_ = time; }
  void PutInPlace();

 private:
  std::filesystem::path path_;
  std::filesystem::path unfinished_;
  FileLock lock_;
  std::ofstream stream_;
  bool isPlaced_ = false;
  std::filesystem::file_time_type time_ = std::filesystem::file_time_type::min();
};

// Puts a finished file of the working folder in place of another, which a kill or a full disk leaves as it was. The
// file's time goes with it. A Refusal, and the old file stays, when there is no room.
void PlaceFile(const std::filesystem::path& finished, const std::filesystem::path& path);

// The same, but the finished file stays where it is too.
void PlaceCopy(const std::filesystem::path& finished, const std::filesystem::path& path);

// Refuses an output that is the source itself, by whatever name, and one that is there already unless it may be replaced.
enum class Existing { Keep, Replace };
void CheckOutput(const std::filesystem::path& source, const std::filesystem::path& output, Existing existing);

}  // namespace tavimo::host
