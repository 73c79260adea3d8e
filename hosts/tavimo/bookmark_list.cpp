#include "bookmark_list.h"

#include <algorithm>
#include <array>
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
  std::array<char, 2 * kLineRoom> utf8{};
  tvUtf8FromGbk(gbk.data(), utf8.data(), static_cast<int>(utf8.size()));
  const std::string text = utf8.data();
  const std::size_t blanks = text.find(kBeforeLabel);
  return blanks == std::string::npos ? "" : text.substr(blanks + std::string(kBeforeLabel).size());
}

std::string GbkLabel(const std::string& label) {
  std::string gbk(2 * label.size() + 1, '\0');
  const int written = tvGbkFromUtf8(label.c_str(), gbk.data(), static_cast<int>(gbk.size()));
  if (written < 0) throw Refusal("the label '" + ReadableText(label) + "' has a character that GBK lacks");
  return gbk;
}

void SetBookmarks(const std::vector<Bookmark>& bookmarks) {
  std::vector<std::string> labels;
  labels.reserve(bookmarks.size());
  for (const Bookmark& bookmark : bookmarks) labels.push_back(GbkLabel(bookmark.label));
  vcDeleteAllBookMark();
  for (std::size_t i = 0; i < bookmarks.size(); ++i) vcAddBookMark(bookmarks[i].timeMs, labels[i].c_str());
}

}  // namespace

std::vector<Bookmark> Bookmarks(const LessonSession& session) {
  const ListBox listBox(tvCreateWindow(TV_LIST_BOX, nullptr, nullptr));
  const auto totalMs = static_cast<std::int32_t>(session.Header().DurationMs());
  const std::int32_t count = vcFillBookMarkList(listBox.get(), totalMs);
  std::vector<Bookmark> bookmarks;
  for (std::int32_t i = 0; i < count; ++i) {
    const auto timeMs = static_cast<std::uint32_t>(vcGetBookMarkTime(i));
    bookmarks.push_back({timeMs, LabelIn(listBox.get(), static_cast<std::size_t>(i))});
  }
  return bookmarks;
}

void StoreBookmarks(LessonSession& session, const std::vector<std::uint32_t>& starts,
                    const std::vector<Bookmark>& bookmarks) {
  SetBookmarks(bookmarks);
  session.StoreStudyFile(starts);
  const auto isKept = [](const Bookmark& stored, const Bookmark& wanted) {
    return stored.timeMs == wanted.timeMs && wanted.label.starts_with(stored.label);
  };
  const std::vector<Bookmark> stored = Bookmarks(session);
  if (std::equal(stored.begin(), stored.end(), bookmarks.begin(), bookmarks.end(), isKept)) return;
  throw Refusal("its bookmarks could not be written in " + Readable(session.Folder().Path() / "zud"));
}

}  // namespace tavimo::host
