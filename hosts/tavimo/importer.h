// Makes a recording that the engine takes out of sound of any kind. The source is only read.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

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

// A Refusal, and nothing is left, when the source cannot be decoded, holds no sound or is too long; Cancelled after
// Ctrl-C.
Imported Import(const ImportRequest& request);

}  // namespace tavimo::host
