// What lies beside a lesson: its picture, its text, and the titles of its passages.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "exercises/exercise_paths.h"

namespace tavimo::exercises {

// Both give the first path of the lesson's name that exists; or false and the last one that was tried, an empty one
// where it would be longer than 259 bytes. An empty lesson path gives false and leaves found as it is.
[[nodiscard]] bool FindPicture(std::string_view lessonPath, ExercisePath& found) noexcept;     // .jpg .bmp .gif .dib
[[nodiscard]] bool FindLessonText(std::string_view lessonPath, ExercisePath& found) noexcept;  // .wz .txt .rtf

inline constexpr int kArticleTitleBytes = 150;

// The title of a passage from "article.txt", in the current directory or else in the platform's folder for profiles; a
// plain word for "article" when it has none. Writes at most kArticleTitleBytes with the terminating zero and returns
// the bytes without it.
int ReadArticleTitle(const char* section, std::int32_t number, char* title) noexcept;

}  // namespace tavimo::exercises
