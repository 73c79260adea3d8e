#include "bookmark_list.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <type_traits>

#include "refusal.h"
#include "tavimo.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace {

// The engine tells labels only to a list box, as "mm:ss   label".
constexpr const char* kBeforeLabel = "   ";
constexpr std::size_t kLineRoom = 64;

struct DestroyWindow {
  void operator()(VcWindow window) const { tvDestroyWindow(window); }
};
using ListBox = std::unique_ptr<std::remove_pointer_t<VcWindow>, DestroyWindow>;

std::string LabelIn(VcWindow listBox, std::size_t line) {
  std::array<char, kLineRoom> gbk{};
  tvSendMessage(listBox, TV_LB_GETTEXT, line, reinterpret_cast<intptr_t>(gbk.data()));
  const std::string text = gbk.data();
  const std::size_t blanks = text.find(kBeforeLabel);
  return blanks == std::string::npos ? "" : text.substr(blanks + std::string(kBeforeLabel).size());
}

void SetBookmarks(const std::vector<Bookmark>& bookmarks) {
  vcDeleteAllBookMark();
  for (const Bookmark& bookmark : bookmarks) vcAddBookMark(bookmark.timeMs, bookmark.gbkLabel.c_str());
}

}  // namespace

std::string GbkLabel(const std::string& utf8) {
  if (auto gbk = GbkFromUtf8(utf8)) return std::move(*gbk);
  throw Refusal("the label '" + ReadableText(utf8) + "' has a character that GBK lacks");
}

std::vector<Bookmark> Bookmarks(const LessonSession& session) {
  const ListBox listBox(tvCreateWindow(TV_LIST_BOX, nullptr, nullptr));
  // Told the true length, the engine would drop every bookmark for the sake of one past the end.
  const std::int32_t count = vcFillBookMarkList(listBox.get(), std::numeric_limits<std::int32_t>::max());
  std::vector<Bookmark> bookmarks;
  for (std::int32_t i = 0; i < count; ++i) {
    const auto timeMs = static_cast<std::uint32_t>(vcGetBookMarkTime(i));
    bookmarks.push_back({timeMs, LabelIn(listBox.get(), static_cast<std::size_t>(i))});
  }
  std::erase_if(bookmarks, [&](const Bookmark& bookmark) { return bookmark.timeMs >= session.Header().DurationMs(); });
  return bookmarks;
}

void StoreBookmarks(LessonSession& session, const std::vector<std::uint32_t>& starts,
                    const std::vector<Bookmark>& bookmarks) {
  SetBookmarks(bookmarks);
  session.StoreStudyFile(starts);
  const auto isKept = [](const Bookmark& stored, const Bookmark& wanted) {
    return stored.timeMs == wanted.timeMs && wanted.gbkLabel.starts_with(stored.gbkLabel);
  };
  const std::vector<Bookmark> stored = Bookmarks(session);
  if (std::equal(stored.begin(), stored.end(), bookmarks.begin(), bookmarks.end(), isKept)) return;
  throw Refusal("its bookmarks could not be written in " + Readable(session.Folder().Path() / "zud"));
}

}  // namespace tavimo::host
