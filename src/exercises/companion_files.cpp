#include "exercises/companion_files.h"

#include <array>
#include <charconv>
#include <span>

#include "hostutil/file_utilities.h"
#include "platform/gbk_literal.h"
#include "platform/profile.h"

namespace tavimo::exercises {

using namespace platform::literals;

namespace {

bool FindFirst(std::string_view stem, std::span<const std::string_view> extensions, ExercisePath& found) noexcept {
  for (const std::string_view extension : extensions) {
    if (!found.Assign(stem, extension)) return false;
    if (hostutil::FileExists(found.CString())) return true;
  }
  return false;
}

// Without its extension; a dot in a folder's name is none, one at the very start is.
std::string_view LessonStem(std::string_view path) noexcept {
  const std::size_t found = path.find_last_of(".\\");
  return found != std::string_view::npos && path[found] == '.' ? path.substr(0, found) : path;
}

// A relative name alone would mean the platform's folder.
ExercisePath TitleFile() noexcept {
  constexpr std::string_view kName = "article.txt";
  ExercisePath path;
  if (path.Assign(std::string_view(".\\"), kName) && hostutil::FileExists(path.CString())) return path;
  std::array<char, kLongestPath + 1> folder{};
  const int length = platform::GetProfileFolder(folder.data(), static_cast<int>(folder.size()));
  static_cast<void>(path.Assign(std::string_view(folder.data(), static_cast<std::size_t>(length)), kName));
  return path;
}

}  // namespace

bool FindPicture(std::string_view lessonPath, ExercisePath& found) noexcept {
  static constexpr std::string_view kExtensions[] = {".jpg", ".bmp", ".gif", ".dib"};
  return !lessonPath.empty() && FindFirst(WithoutExtension(lessonPath), kExtensions, found);
}

bool FindLessonText(std::string_view lessonPath, ExercisePath& found) noexcept {
  static constexpr std::string_view kExtensions[] = {".wz", ".txt", ".rtf"};
  return !lessonPath.empty() && FindFirst(LessonStem(lessonPath), kExtensions, found);
}

int ReadArticleTitle(const char* section, std::int32_t number, char* title) noexcept {
  std::array<char, 16> key{};
  std::to_chars(key.data(), key.data() + key.size() - 1, number);
  return platform::GetProfileText(section, key.data(), u8"文章"_gbk, title, kArticleTitleBytes, TitleFile().CString());
}

}  // namespace tavimo::exercises
