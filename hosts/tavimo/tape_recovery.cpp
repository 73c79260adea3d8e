#include "tape_recovery.h"

#include <algorithm>
#include <iostream>

#include "refusal.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

// The current directory is another one while it lives.
class Visit {
 public:
  explicit Visit(const fs::path& folder) : previous_(fs::current_path()) { fs::current_path(folder); }
  Visit(const Visit&) = delete;
  Visit& operator=(const Visit&) = delete;
  ~Visit() {
    std::error_code ignored;
    fs::current_path(previous_, ignored);
  }

 private:
  fs::path previous_;
};

void RecoverLesson(const fs::path& lesson, RecoveryReport& report) {
  const FileLock lock(lesson / kTapeLockFile);
  if (lock.IsHeldElsewhere()) {
    report.alive.push_back(lesson.filename());
    return;
  }
  if (!lock.IsHeld()) throw Refusal("its file " + std::string(kTapeLockFile) + " cannot be made or locked");
  const Visit visit(lesson);
  if (auto take = KeepTape()) {
    take->file = lesson / take->file;
    if (take->recording.empty()) take->recording = Utf8(lesson.filename());
    report.kept.push_back(std::move(*take));
  }
}

std::vector<fs::path> LessonsWithTape(const fs::path& home) {
  std::vector<fs::path> lessons;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(home / "lessons", error)) {
    if (fs::exists(entry.path() / kTapeFile, error)) lessons.push_back(entry.path());
  }
  std::sort(lessons.begin(), lessons.end());
  return lessons;
}

}  // namespace

RecoveryReport RecoverTapes(const fs::path& home) {
  RecoveryReport report;
  for (const fs::path& lesson : LessonsWithTape(home)) {
    try {
      RecoverLesson(lesson, report);
    } catch (const std::exception& problem) {  // one lesson's trouble is not the others'
      report.failures.push_back(Readable(lesson.filename()) + ": " + problem.what());
    }
  }
  return report;
}

std::string Describe(const KeptTake& take) {
  std::string line = Readable(PathFromUtf8(take.recording).filename());
  if (take.sentence > 0) line += ", sentence " + std::to_string(take.sentence);
  const std::string what = take.file.extension() == ".wav" ? FormatTime(take.durationMs) : "no recording";
  return line + ": " + what + ", kept as " + Readable(take.file);
}

void RecoverAtStart(const fs::path& home) {
  const RecoveryReport report = RecoverTapes(home);
  for (const KeptTake& take : report.kept) {
    std::cerr << "tavimo: recovered an unsaved recording of " << Describe(take) << '\n';
  }
  for (const std::string& failure : report.failures) std::cerr << "tavimo: " << failure << '\n';
}

}  // namespace tavimo::host
