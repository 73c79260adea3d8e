#include "edit_journal.h"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <sstream>

#include "content_hash.h"
#include "digest_maker.h"
#include "moment.h"
#include "new_file.h"
#include "refusal.h"
#include "system.h"
#include "take_moves.h"
#include "tape.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kUnfinishedBackup = "editing.new";
constexpr const char* kOpenEdit = "editing";
constexpr const char* kEndedEdit = "editing.old";  // put back already; only to be removed
constexpr const char* kBackups = "backups";
constexpr const char* kNote = "edit.txt";
constexpr const char* kStamp = "after.txt";
constexpr const char* kSavedRecording = "recording.wav";

struct SavedFile {
  fs::path file;
  const char* backup;
};

std::vector<SavedFile> SavedFiles(const LessonFiles& files) {
  return {{files.recording, kSavedRecording},
          {files.study, "study.zud"},
          {files.digest, "digest.tmp"},
          {kPeakMark, "peak.hash"}};
}

void Rename(const fs::path& from, const fs::path& to) {
  std::error_code error;
  host::Rename(from, to, error);
  if (error) throw fs::filesystem_error("cannot rename", from, to, error);
  FlushToDisk(fs::absolute(to).parent_path());
}

// One line: the numbers of the sentences that were deleted.
void WriteNote(const fs::path& folder, const std::vector<int>& sentences) {
  std::string line;
  for (const int sentence : sentences) line += std::to_string(sentence) + ' ';
  NewFile note(folder / kNote);
  note.Write(line.data(), line.size());
  note.PutInPlace();
  FlushToDisk(folder / kNote);
}

std::vector<int> ReadNote(const fs::path& folder) {
  std::ifstream note(folder / kNote);
  return {std::istream_iterator<int>(note), {}};
}

// What the recording and the study file are after a change, in a word that differs when one of them has changed since.
std::string StampOf(const LessonFiles& files) {
  std::error_code error;
  std::ostringstream stamp;
  stamp << fs::file_size(files.recording, error) << ' '
        << LastWriteTime(files.recording, error).time_since_epoch().count();
  std::ifstream study(files.study, std::ios::binary);
  const std::string content{std::istreambuf_iterator<char>(study), {}};
  stamp << ' ' << ContentHash(content.data(), content.size());
  return stamp.str();
}

void CopyTime(const fs::path& from, const fs::path& to) {
  std::error_code error;
  const fs::file_time_type time = LastWriteTime(from, error);
  if (!error) SetLastWriteTime(to, time, error);
  if (error) throw fs::filesystem_error("cannot set the time", to, error);
}

void SaveFile(const SavedFile& saved) {
  if (!fs::exists(saved.file)) return;
  const fs::path copy = fs::path(kUnfinishedBackup) / saved.backup;
  fs::copy_file(saved.file, copy);
  fs::permissions(copy, fs::perms::owner_write, fs::perm_options::add);
  CopyTime(saved.file, copy);
  FlushToDisk(copy);
}

void MakeBackup(const LessonFiles& files, const std::vector<int>& sentences) try {
  fs::remove_all(kUnfinishedBackup);
  fs::create_directory(kUnfinishedBackup);
  for (const SavedFile& saved : SavedFiles(files)) SaveFile(saved);
  WriteNote(kUnfinishedBackup, sentences);
  FlushToDisk(kUnfinishedBackup);
} catch (const std::exception& problem) {
  std::error_code ignored;
  fs::remove_all(kUnfinishedBackup, ignored);
  throw Refusal("its backup cannot be made in " + Readable(fs::current_path()) + " (" + ReadableText(problem.what()) +
                "); nothing was changed");
}

bool IsSame(const fs::path& left, const fs::path& right) {
  std::error_code error;
  const bool isSame = fs::file_size(left, error) == fs::file_size(right, error) &&
                      LastWriteTime(left, error) == LastWriteTime(right, error);
  return isSame && !error;
}

void PutBack(const SavedFile& saved) {
  const fs::path backup = fs::path(kOpenEdit) / saved.backup;
  if (!fs::exists(backup)) {
    if (saved.backup == kSavedRecording) throw Refusal("its backup is not whole");
    fs::remove(saved.file);
  } else if (!IsSame(backup, saved.file)) {
    PlaceCopy(backup, saved.file);  // a recording that was not reached yet need not be copied
  }
}

// Doing it again after a kill in its middle ends the same way. The recording comes first. REQUIRES: the lock.
void PutEverythingBack(const LessonFiles& files) {
  for (const SavedFile& saved : SavedFiles(files)) PutBack(saved);
  BringTakesBack(kOpenEdit, ReadNote(kOpenEdit));
  // First out of the way as a whole: a folder that lacks half of its files must never be put back.
  Rename(kOpenEdit, kEndedEdit);
  fs::remove_all(kEndedEdit);
}

// Takes a change back in a destructor or on the way out of a failure, where no second one may be thrown.
void TryToPutEverythingBack(const LessonFiles& files) noexcept try {
  PutEverythingBack(files);
} catch (const std::exception&) {
  // The folder stays, and the next command tries again and tells why it cannot.
}

// The 3 of "3_2026-11-23_19-05-30"; 0 for a folder that is no backup.
int NumberOf(const fs::path& backup) {
  const std::string name = Utf8(backup.filename());
  int number = 0;
  const auto [stop, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  return error == std::errc() && stop != name.data() + name.size() && *stop == '_' ? number : 0;
}

std::vector<fs::path> Backups() {
  std::vector<fs::path> backups;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(kBackups, error)) {
    if (fs::exists(entry.path() / kSavedRecording) && NumberOf(entry.path()) > 0) backups.push_back(entry.path());
  }
  std::sort(backups.begin(), backups.end(),
            [](const fs::path& left, const fs::path& right) { return NumberOf(left) < NumberOf(right); });
  return backups;
}

// Numbers and not moments tell the order: clocks are set back.
fs::path NextBackup() {
  const std::vector<fs::path> backups = Backups();
  const int number = backups.empty() ? 1 : NumberOf(backups.back()) + 1;
  return fs::path(kBackups) / (std::to_string(number) + "_" + MomentName(fs::file_time_type::clock::now()));
}

bool IsReadOnly(const fs::path& recording) {
  return (fs::status(recording).permissions() & fs::perms::owner_write) == fs::perms::none;
}

}  // namespace

EditLock::EditLock() : changing_(kEditLockFile, kChangingElsewhere), recording_(kTapeLockFile, kRecordingElsewhere) {}

RecordingEdit::RecordingEdit(const LessonFiles& files) : files_(files) {}

void RecordingEdit::Begin(const std::vector<int>& deletedSentences) {
  if (IsReadOnly(files_.recording)) throw Refusal("it is marked read-only; nothing was changed");
  MakeBackup(files_, deletedSentences);
  Rename(kUnfinishedBackup, kOpenEdit);
  isOpen_ = true;
  MoveTakesAway(kOpenEdit, deletedSentences);
}

RecordingEdit::~RecordingEdit() {
  if (isOpen_) TryToPutEverythingBack(files_);
}

fs::path RecordingEdit::Keep() {
  const std::string stamp = StampOf(files_);
  NewFile after(fs::path(kOpenEdit) / kStamp);
  after.Write(stamp.data(), stamp.size());
  after.PutInPlace();
  fs::create_directories(kBackups);
  for (const fs::path& file : {files_.recording, files_.study}) {
    FlushToDisk(file);
    FlushToDisk(fs::absolute(file).parent_path());
  }
  const fs::path backup = NextBackup();
  Rename(kOpenEdit, backup);
  isOpen_ = false;
  return backup;
}

bool TakeBackInterruptedEdit(const LessonFiles& files) {
  std::error_code error;
  const bool isTidy =
      !fs::exists(kUnfinishedBackup, error) && !fs::exists(kOpenEdit, error) && !fs::exists(kEndedEdit, error);
  if (isTidy) return false;
  const EditLock lock;
  fs::remove_all(kUnfinishedBackup, error);
  fs::remove_all(kEndedEdit, error);
  if (!fs::exists(kOpenEdit)) return false;
  try {
    PutEverythingBack(files);
  } catch (const std::exception& problem) {
    throw Refusal("a change to it was interrupted and cannot be taken back yet: " + std::string(problem.what()) +
                  "; its files are safe in " + Readable(fs::absolute(kOpenEdit)));
  }
  return true;
}

UndoneEdit UndoNewestEdit(const LessonFiles& files, LaterChanges laterChanges) {
  const EditLock lock;
  const std::vector<fs::path> backups = Backups();
  if (backups.empty()) throw Refusal("nothing was deleted from it that could be undone");
  const fs::path& newest = backups.back();
  std::string stamp;
  std::getline(std::ifstream(newest / kStamp), stamp);
  if (laterChanges == LaterChanges::Refuse && stamp != StampOf(files)) {
    throw Refusal("it, its sentences or its bookmarks were changed after that; --force takes that back too");
  }
  const std::string name = Utf8(newest.filename());
  const UndoneEdit undone{MomentOf(name.substr(name.find('_') + 1)), ReadNote(newest)};
  Rename(newest, kOpenEdit);
  try {
    PutBack(SavedFiles(files).front());
  } catch (const std::exception&) {
    Rename(kOpenEdit, newest);  // the recording comes first, so nothing has changed yet
    throw;
  }
  PutEverythingBack(files);
  return undone;
}

}  // namespace tavimo::host
