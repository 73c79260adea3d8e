// A lock on a part of a lesson, or a Refusal that tells why there is none.
#pragma once

#include <chrono>
#include <memory>
#include <thread>

#include "refusal.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

// Whether whoever finds a lock held goes on trying for a while: for work that is over in moments.
enum class WhenHeld { Refuse, Wait };

class LessonLock {
 public:
  // The file is relative to the lesson's working folder, which is the current directory.
  LessonLock(const char* file, const char* reason, WhenHeld whenHeld = WhenHeld::Refuse)
      : lock_(std::make_unique<FileLock>(file)) {
    const auto end = std::chrono::steady_clock::now() + kLongestWait;
    while (whenHeld == WhenHeld::Wait && lock_->IsHeldElsewhere() && std::chrono::steady_clock::now() < end) {
      std::this_thread::sleep_for(kBetweenTries);
      StopIfInterrupted();
      lock_ = std::make_unique<FileLock>(file);
    }
    if (lock_->IsHeldElsewhere()) throw Refusal(reason);
    if (!lock_->IsHeld()) {
      throw Refusal("the file " + Readable(std::filesystem::current_path() / file) + " cannot be made or locked");
    }
  }

 private:
  static constexpr auto kLongestWait = std::chrono::seconds(10);
  static constexpr auto kBetweenTries = std::chrono::milliseconds(5);

  std::unique_ptr<FileLock> lock_;
};

inline constexpr const char* kRecordingElsewhere = "another tavimo is recording it right now";
inline constexpr const char* kChangingElsewhere = "another tavimo is changing it right now";

}  // namespace tavimo::host
