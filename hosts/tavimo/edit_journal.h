// Changes to a recording that can be taken back, and that a kill or a power cut leaves all done or all undone.
//
// In the lesson's working folder, which is the current directory:
//
//   editing.new/                    a backup that is being made; nothing has been changed yet
//   editing/                        the backup of a change that is under way
//   backups/3_2026-11-23_19-05-30/  the backup of the third change that was made
//
// A backup holds recording.wav, study.zud, digest.tmp and peak.hash as far as there were any, the folder takes, and what
// was done in edit.txt. One rename begins a change and one ends it: whoever finds the folder "editing" puts everything in
// it back. To undo a change its backup becomes "editing" again.
//
// editing.lock is held while a change is made or taken back, and by whoever stores sentences or bookmarks.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "lesson_lock.h"

namespace tavimo::host {

inline constexpr const char* kEditLockFile = "editing.lock";

// What belongs to a recording and changes with it.
struct LessonFiles {
  std::filesystem::path recording;
  std::filesystem::path study;  // in the working folder, as is the digest
  std::filesystem::path digest;
};

// While it lives nobody else records the learner or changes the recording.
class EditLock {
 public:
  EditLock();  // a Refusal when somebody does

 private:
  LessonLock changing_;
  LessonLock recording_;
};

class RecordingEdit {
 public:
  // From here on nobody else records or changes the lesson: what is read of it now holds. A Refusal when somebody does.
  explicit RecordingEdit(const LessonFiles& files);
  RecordingEdit(const RecordingEdit&) = delete;
  RecordingEdit& operator=(const RecordingEdit&) = delete;
  ~RecordingEdit();  // takes the change back unless it was kept

  // Backs everything up and begins the change. A Refusal, and nothing is left, when there is no room or the recording is
  // marked read-only. The deleted sentences' numbers count from 1 and rise.
  void Begin(const std::vector<int>& deletedSentences);

  // The change is made; returns the folder of its backup, relative to the working folder. A Refusal when that cannot be
  // told for sure: the change is then taken back.
  std::filesystem::path Keep();

 private:
  const LessonFiles files_;
  const EditLock lock_;
  bool isOpen_ = false;
};

// Puts back what a change that never ended has left. True when there was one. A Refusal when another process is changing
// the recording right now, or when there is no room to put it back: its backup then stays.
bool TakeBackInterruptedEdit(const LessonFiles& files);

// What undo does where the recording or its study file are not as the change left them.
enum class LaterChanges { Refuse, Lose };

struct UndoneEdit {
  std::string moment;  // "2026-11-23 19:05:30"
  std::vector<int> sentences;
};

// Takes back the newest change that was kept, and its backup goes. A Refusal, and nothing has changed, where there is none
// or no room.
UndoneEdit UndoNewestEdit(const LessonFiles& files, LaterChanges laterChanges);

}  // namespace tavimo::host
