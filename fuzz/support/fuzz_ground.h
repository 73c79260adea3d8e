// The ground of every fuzz target: a scratch folder with the engine's working folders, the engine as at load, message boxes
// that are looked at and swallowed, and a check that stops the run. Knows nothing of any file format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "tavimo.h"

namespace tavimo::fuzz {

// No file grows past this: the system refuses what lies behind, as on a full disk. So a position far out costs no time, and
// the texts of any file fit the room that the table of exports gives them.
inline constexpr std::size_t kLargestFile = 1'000'000;

// Empties the scratch folder, makes it the current one and puts the engine back to its state at load, so that an input
// finds the same ground whatever ran before it.
void Prepare();

// A file of the scratch folder, replaced.
void WriteFile(const char* path, const std::uint8_t* bytes, std::size_t byteCount);
inline void WriteFile(const char* path, const std::vector<std::uint8_t>& bytes) {
  WriteFile(path, bytes.data(), bytes.size());
}
std::vector<std::uint8_t> ReadFile(const char* path);  // empty when it is missing

// Ends the process with a report when a promise is broken.
void Check(bool isKept, std::string_view promise);

// What every message box of the engine keeps to.
void LookAtMessage(const char* text, const char* caption);

// The bytes; when the last one is 1, 2 or 3, over and over past the 256 KiB or the 64 KiB that the engine reads a file by, or
// past its largest page. An input of that length would take the fuzzer too long to find.
std::vector<std::uint8_t> Stretched(const std::uint8_t* bytes, std::size_t byteCount);

// At the end of an input: the engine is put back to its state at load, and then no handle is open that was not before and
// no half-written file lies about.
void CheckNothingIsLeft();

// A path that stays in the scratch folder whatever it was: no step upwards, no root, and no name that the engine's half-written
// files have. Drive letters lead there as well.
std::string HarmlessPath(std::string path);

// A picture with a font, the same one for all runs of the process; one without a font.
VcDc PaneWithFont();
VcDc PaneWithoutFont();
VcDc DeadPane();  // the handle of one that is destroyed

// A host's buffer of exactly so much room: the sanitizer reports the first byte written behind it.
class ExactRoom {
 public:
  explicit ExactRoom(std::size_t byteCount) : bytes_(new char[byteCount]) {}
  explicit ExactRoom(std::string_view text) : ExactRoom(text.size() + 1) {
    std::memcpy(bytes_, text.data(), text.size());
    bytes_[text.size()] = '\0';
  }
  ExactRoom(const ExactRoom&) = delete;
  ExactRoom& operator=(const ExactRoom&) = delete;
  ~ExactRoom() { delete[] bytes_; }
  char* Data() { return bytes_; }

 private:
  char* bytes_;
};

}  // namespace tavimo::fuzz
