// How the pages of a script are made: the font, the page and the spacing, and how the script is read. Kept in the script's
// working folder, so that every command shows the same pages.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tavimo::host {

enum class LostText { Refuse, Replace };  // what becomes of characters that GBK lacks

struct PageSetup {
  std::string font = "sans-serif";  // the family, UTF-8
  int sizePx = 20;
  int width = 660;  // of the page in pixels, margins included
  int height = 500;
  int spacing = 1;                      // 0 single, 1 one and a fifth, 2 one and a half
  std::optional<std::string> encoding;  // of the script; none: it tells itself
  LostText lost = LostText::Refuse;
};

// What pages were made of: whether they are still right can be told without making them again.
struct BuiltPages {
  PageSetup setup;
  std::string textHash;  // of the text as the engine has it
  std::string fontHash;  // of all advances: a font may be replaced by another edition of it
};

// None where the file is missing or damaged.
[[nodiscard]] std::optional<BuiltPages> ReadBuiltPages(const std::filesystem::path& file);

// A Refusal, and the old file stays, when it cannot be written.
void WriteBuiltPages(const std::filesystem::path& file, const BuiltPages& built);

// "640x480", each side 16 to 4096; none for anything else.
struct PageSize {
  int width = 0;
  int height = 0;
};
[[nodiscard]] std::optional<PageSize> ParsePageSize(const std::string& text);

// "12,34", each 0 to 4096; none for anything else.
struct PagePoint {
  int x = 0;
  int y = 0;
};
[[nodiscard]] std::optional<PagePoint> ParsePagePoint(const std::string& text);

inline constexpr int kSmallestFontPx = 6;
inline constexpr int kLargestFontPx = 200;

}  // namespace tavimo::host
