// The digest of a recording: found when it is current and of the kind asked for, made when it is not.
#pragma once

#include <cstdint>
#include <vector>

#include "lesson_session.h"

namespace tavimo::host {

enum class DigestKind {
  Peak,   // the loudest sample of every 40 ms, made by this program
  Exact,  // the last sample of every 40 ms, made by the engine
};

// Holds the hash of the peak digest made last, in the working folder. A working digest is of that kind when it has the
// hash, and the engine's own otherwise: nothing needs to be kept up to date when another digest takes its place.
inline constexpr const char* kPeakMark = "peak.hash";

struct Digest {
  std::vector<std::uint8_t> levels;
  bool wasFound = false;
};

// Leaves the digest in the session's working folder and open in the engine. A Refusal when it cannot be made, Cancelled
// after Ctrl-C; an earlier digest then stays or is gone, but never half there.
[[nodiscard]] Digest OpenDigest(const LessonSession& session, DigestKind kind);

}  // namespace tavimo::host
