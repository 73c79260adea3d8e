// The ground of every fuzz target: a scratch folder with the engine's working folders, message boxes that are looked
// at and swallowed, and a check that stops the run. Knows nothing of any file format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tavimo::fuzz {

// Makes the scratch folder the current one; the same one for all runs of the process.
void Prepare();

// A file of the scratch folder, replaced.
void WriteFile(const char* path, const std::uint8_t* bytes, std::size_t byteCount);
std::vector<std::uint8_t> ReadFile(const char* path);

// Ends the process with a report when a promise is broken.
void Check(bool isKept, std::string_view promise);

// A host's buffer of exactly so much room: the sanitizer reports the first byte written behind it.
class ExactRoom {
 public:
  explicit ExactRoom(std::size_t byteCount) : bytes_(new char[byteCount]) {}
  ExactRoom(const ExactRoom&) = delete;
  ExactRoom& operator=(const ExactRoom&) = delete;
  ~ExactRoom() { delete[] bytes_; }
  char* Data() { return bytes_; }

 private:
  char* bytes_;
};

}  // namespace tavimo::fuzz
