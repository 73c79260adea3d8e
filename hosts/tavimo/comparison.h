// A sentence and a take of it side by side: how long each is, how much of it is speech, and both waves under each other on
// one scale of time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "lesson_session.h"
#include "sentence_stretch.h"
#include "take_shelf.h"

namespace tavimo::host {

struct SpokenPart {
  std::int64_t lengthMs = 0;
  std::int64_t speechMs = 0;  // of the levels above the threshold
  int threshold = 0;
};

struct Comparison {
  int sentence = 0;
  Stretch stretch;
  Take take;
  SpokenPart sentencePart;
  SpokenPart takePart;
};

// The level that is louder than the pauses, between the quietest tenth of the levels and the loudest twentieth. A
// microphone's noise lifts both, so a recording and a take each need their own.
[[nodiscard]] int SpeechThreshold(std::vector<std::uint8_t> levels);

// Measures both and saves the picture; the take's digest is left where the engine draws it from. A Refusal when either
// cannot be read or the picture cannot be saved; no tape is touched.
// REQUIRES: the lesson's digest is open in the engine, and levels are its levels.
[[nodiscard]] Comparison SaveComparison(LessonSession& session, const std::vector<std::uint8_t>& levels, int sentence,
                                        const Take& take, const std::filesystem::path& picture);

// Two lines: "sentence 3: 0:02.480 long, 0:01.960 of it speech", and the take's.
[[nodiscard]] std::string Describe(const Comparison& comparison);

}  // namespace tavimo::host
