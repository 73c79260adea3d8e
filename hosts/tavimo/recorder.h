// Records the learner after a sentence of the open lesson, through the engine's exports in their order, and keeps the
// take. What ends a take is decided here; what a tape is stands in tape.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "lesson_session.h"
#include "take_shelf.h"
#include "tape.h"

namespace tavimo::host {

enum class TakeStart {
  Fresh,
  AtEnd,   // of the newest take, whose sound the new one begins with
  AtTime,  // the same, up to a time
};

struct RecordingRequest {
  int sentence = 0;
  TakeStart start = TakeStart::Fresh;
  std::int64_t atMs = 0;
  std::string device;                     // as tvUseWaveInput takes it; empty: the one that is chosen already
  std::optional<std::int64_t> silenceMs;  // ends the take once the learner has spoken
  std::optional<std::int64_t> lengthMs;   // ends the take in any case
};

enum class TakeEnd { Key, Interrupt, Silence, Length, DeviceGone, DiskFull };

struct RecordingResult {
  KeptTake take;
  TakeEnd end = TakeEnd::Key;
  bool hasSpeech = false;  // whether anything louder than the room was heard
};

// An unsaved tape of this lesson is kept as a take before, with a line on standard error. A Refusal when there is no
// microphone, no take to continue, no sound at all, or another process records this lesson.
[[nodiscard]] RecordingResult RecordTake(const LessonSession& session, const RecordingRequest& request);

}  // namespace tavimo::host
