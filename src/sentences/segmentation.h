// Cutting a recording into sentences by its digest: stretches of sound with silence between them. Makes "tmp.sen", a
// bare table of start times, and nothing else.
#pragma once

#include <cstdint>

#include "platform/files.h"

namespace tavimo::sentences {

struct SilenceRule {
  std::int32_t threshold = 0;  // a level at or below is silent; below 0 no sound is ever found
  std::int32_t length = 0;     // so many silent levels in a row end a sentence, 1 to kLongestSilence
};

inline constexpr std::int32_t kLongestSilence = 1024;

// The file in the current directory that carries the starts from segmentation to the study file.
inline constexpr const char* kTmpSentences = "tmp.sen";

// The number of sentences when it is 2 or more; 0 for fewer or for a silence length out of range, and no "tmp.sen" is
// left; -1 when "tmp.sen" cannot be written.
[[nodiscard]] std::int32_t MakeSentences(platform::FileStream& digest, SilenceRule rule) noexcept;

}  // namespace tavimo::sentences
