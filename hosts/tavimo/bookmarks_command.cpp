// `tavimo bookmarks`: places in a recording to come back to; listed, added, removed.
#include <iomanip>
#include <iostream>

#include "bookmark_list.h"
#include "options.h"
#include "refusal.h"
#include "sentence_stretch.h"
#include "text.h"

namespace tavimo::host {

namespace {

std::string LabelOf(const Bookmark& bookmark) { return ReadableText(Utf8FromGbk(bookmark.gbkLabel)); }

void List(const std::vector<Bookmark>& bookmarks) {
  if (bookmarks.empty()) {
    std::cout << "no bookmark yet; tavimo bookmarks add makes one\n";
    return;
  }
  std::cout << "   no.        time  label\n";
  for (std::size_t i = 0; i < bookmarks.size(); ++i) {
    std::cout << std::setw(6) << i + 1 << std::setw(12) << FormatTime(bookmarks[i].timeMs) << "  "
              << LabelOf(bookmarks[i]) << '\n';
  }
}

std::int64_t TimeFor(LessonSession& session, const Options& options) {
  const std::int64_t timeMs = options.timeMs ? *options.timeMs : StretchOf(session, options.sentence.value()).startMs;
  if (timeMs == 0) throw Refusal("a bookmark cannot stand at the very beginning; 0.001 is the first place");
  if (timeMs >= session.Header().DurationMs()) {
    throw Refusal("it ends at " + FormatTime(session.Header().DurationMs()) + ", before " + FormatTime(timeMs));
  }
  return timeMs;
}

void Add(LessonSession& session, const Options& options, std::vector<Bookmark>& bookmarks) {
  if (bookmarks.size() >= kMostBookmarks) {
    throw Refusal("it has " + std::to_string(kMostBookmarks) + " bookmarks already, and there is room for no more");
  }
  bookmarks.push_back({static_cast<std::uint32_t>(TimeFor(session, options)), GbkLabel(options.label)});
}

void Remove(const Options& options, std::vector<Bookmark>& bookmarks) {
  const auto number = static_cast<std::size_t>(options.bookmark.value());
  if (number > bookmarks.size()) {
    throw Refusal("there is no bookmark " + std::to_string(number) + "; it has " + std::to_string(bookmarks.size()));
  }
  bookmarks.erase(bookmarks.begin() + static_cast<std::ptrdiff_t>(number) - 1);
}

}  // namespace

int RunBookmarks(const Options& options) {
  LessonSession session(options.home, options.files.front());
  std::optional<LessonLock> lock;  // a list may be shown while another process works
  if (options.bookmarksAction != BookmarksAction::List) lock.emplace(kEditLockFile, kChangingElsewhere);
  const std::vector<std::uint32_t> starts = session.LoadStudyFile();
  std::vector<Bookmark> bookmarks = Bookmarks(session);
  if (options.bookmarksAction == BookmarksAction::Add) Add(session, options, bookmarks);
  if (options.bookmarksAction == BookmarksAction::Remove) Remove(options, bookmarks);
  if (options.bookmarksAction == BookmarksAction::Clear) bookmarks.clear();
  if (options.bookmarksAction != BookmarksAction::List) {
    StoreBookmarks(session, starts, bookmarks);
  }
  List(Bookmarks(session));
  return kDone;
}

}  // namespace tavimo::host
