// A lock on a part of a lesson, or a Refusal that tells why there is none.
#pragma once

#include "refusal.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

class LessonLock {
 public:
  // The file is relative to the lesson's working folder, which is the current directory.
  LessonLock(const char* file, const char* whenHeldElsewhere) : lock_(file) {
    if (lock_.IsHeldElsewhere()) throw Refusal(whenHeldElsewhere);
    if (!lock_.IsHeld()) {
      throw Refusal("the file " + Readable(std::filesystem::current_path() / file) + " cannot be made or locked");
    }
  }

 private:
  FileLock lock_;
};

inline constexpr const char* kRecordingElsewhere = "another tavimo is recording it right now";
inline constexpr const char* kChangingElsewhere = "another tavimo is changing it right now";

}  // namespace tavimo::host
