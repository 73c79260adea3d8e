// Makes a recording that the engine takes out of sound of any kind. The source is only read.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "new_file.h"

namespace tavimo::host {

inline constexpr int kLowestImportRate = 8000;
inline constexpr int kHighestImportRate = 48000;

struct ImportRequest {
  std::filesystem::path source;
  std::filesystem::path recording;
  Existing existing = Existing::Keep;
  std::optional<int> sampleRate;  // without one, the source's as far as it is within the bounds above
  std::optional<int> channels;    // 1 or 2; without one, those of the source, but one for more than two
};

struct Imported {
  std::int64_t lengthMs = 0;
  bool isWhole = true;  // false: the source is damaged or cut off, and what could be decoded is there
  std::int64_t sourceLengthMs = 0;
};

// Beside the source, so that the lesson's other files are found with it. A source that is a .wav file keeps its name, and
// the recording has "-16bit" behind it.
[[nodiscard]] std::filesystem::path RecordingFor(const std::filesystem::path& source);

// The source's name without extension, of a recording that may be an import.
[[nodiscard]] std::string SourceStem(const std::filesystem::path& recording);

// A Refusal, and nothing is left, when the source cannot be decoded, holds no sound or is too long; Cancelled after
// Ctrl-C.
Imported Import(const ImportRequest& request);

}  // namespace tavimo::host
