#include "sentence_remover.h"

#include <algorithm>
#include <optional>

#include "bookmark_list.h"
#include "edit_journal.h"
#include "progress_bar.h"
#include "refusal.h"
#include "sentence_stretch.h"
#include "tavimo.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::uint32_t kDeletedStart = 0xFFFFFFFF;

ProgressBar* shownProgress = nullptr;  // a window procedure has no other way to it

intptr_t VC_CALL ShowProgress(VcWindow window, std::uint32_t message, std::uintptr_t wparam, intptr_t lparam) {
  if (message == TV_PBM_SETPOS && shownProgress != nullptr) shownProgress->Show(static_cast<int>(wparam));
  return tvDefaultProc(window, message, wparam, lparam);
}

// A progress bar for the engine, which ends on the terminal.
class EngineProgress {
 public:
  explicit EngineProgress(const std::string& title) : bar_(title) { shownProgress = &bar_; }
  EngineProgress(const EngineProgress&) = delete;
  EngineProgress& operator=(const EngineProgress&) = delete;
  ~EngineProgress() {
    shownProgress = nullptr;
    tvDestroyWindow(window_);
  }
  [[nodiscard]] VcWindow Window() const { return window_; }

 private:
  ProgressBar bar_;
  VcWindow window_ = tvCreateWindow(TV_PROGRESS_BAR, nullptr, ShowProgress);
};

// The new time of a bookmark: as far behind its sentence's start as before. None in a deleted sentence.
std::optional<std::uint32_t> MovedTime(std::uint32_t timeMs, const std::vector<std::uint32_t>& starts,
                                       const std::vector<std::uint32_t>& newStarts) {
  const auto behind = std::upper_bound(starts.begin(), starts.end(), timeMs);
  if (behind == starts.begin()) return timeMs;  // what lies before the first sentence stays
  const auto sentence = static_cast<std::size_t>(behind - starts.begin()) - 1;
  if (newStarts[sentence] == kDeletedStart) return {};
  return newStarts[sentence] + (timeMs - starts[sentence]);
}

std::vector<Bookmark> MovedBookmarks(const std::vector<Bookmark>& bookmarks, const std::vector<std::uint32_t>& starts,
                                     const std::vector<std::uint32_t>& newStarts) {
  std::vector<Bookmark> moved;
  for (const Bookmark& bookmark : bookmarks) {
    const auto timeMs = MovedTime(bookmark.timeMs, starts, newStarts);
    if (timeMs && *timeMs > 0) moved.push_back({*timeMs, bookmark.gbkLabel});
  }
  return moved;
}

std::vector<std::uint32_t> FlagsFor(const std::vector<int>& sentences, std::size_t count) {
  std::vector<std::uint32_t> flags(count, 0);
  for (const int sentence : sentences) flags[static_cast<std::size_t>(sentence) - 1] = 1;
  return flags;
}

// The new starts, those of deleted sentences marked. The engine stores a study file too; the one with the bookmarks
// takes its place.
std::vector<std::uint32_t> DeleteFromRecording(const LessonSession& session, const std::vector<int>& sentences,
                                               const std::vector<std::uint32_t>& starts) {
  std::vector<std::uint32_t> newStarts = starts;
  const std::vector<std::uint32_t> flags = FlagsFor(sentences, starts.size());
  const EngineProgress progress(Readable(session.Recording().filename()));
  if (vcDeleteSentenceInFile(session.EngineName().c_str(), session.StudyEngineName().c_str(),
                             static_cast<std::int32_t>(starts.size()), flags.data(), newStarts.data(),
                             progress.Window()) != 0) {
    throw Refusal("the sentences could not be cut out of it; is there room beside it? Nothing was changed");
  }
  return newStarts;
}

// A recording that the engine reaches by a second name of its own would stay as it is under its first one.
void CheckItBecameShorter(LessonSession& session) {
  const std::uint64_t before = session.Header().dataLength;
  session.ReadHeaderAgain();
  if (session.Header().dataLength < before) return;
  throw Refusal("the engine could not change it under its own name; nothing was changed");
}

}  // namespace

Deletion DeleteSentences(LessonSession& session, std::vector<int> sentences) {
  std::sort(sentences.begin(), sentences.end());
  sentences.erase(std::unique(sentences.begin(), sentences.end()), sentences.end());
  RecordingEdit edit(session.Files());
  session.ReadHeaderAgain();  // somebody may have changed the recording before the lock was ours
  for (const int sentence : sentences) (void)StretchOf(session, sentence);  // refuses what is no sentence
  const std::vector<std::uint32_t> starts = session.LoadStudyFile();
  if (sentences.size() == starts.size()) throw Refusal("nothing of it would be left; delete the file instead");
  const std::vector<Bookmark> bookmarks = Bookmarks(session);

  edit.Begin(sentences);
  const std::vector<std::uint32_t> newStarts = DeleteFromRecording(session, sentences, starts);
  CheckItBecameShorter(session);
  std::vector<std::uint32_t> keptStarts = newStarts;
  std::erase(keptStarts, kDeletedStart);
  const std::vector<Bookmark> kept = MovedBookmarks(bookmarks, starts, newStarts);
  StoreBookmarks(session, keptStarts, kept);
  std::error_code ignored;
  fs::remove(session.DigestPath(), ignored);  // it shows what is no longer there
  return {keptStarts.size(), bookmarks.size() - kept.size(), edit.Keep()};
}

}  // namespace tavimo::host
