// The file has a line "name=value" for each setting.
#include "page_setup.h"

#include <charconv>
#include <fstream>
#include <map>

#include "new_file.h"

namespace tavimo::host {

namespace {

constexpr int kShortestSide = 16;
constexpr int kLongestSide = 4096;

using Lines = std::map<std::string, std::string>;

std::optional<int> ParseNumber(std::string_view text, int least, int most) {
  int number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool isWhole = error == std::errc() && stop == text.data() + text.size();
  return isWhole && number >= least && number <= most ? std::optional(number) : std::nullopt;
}

struct NumberPair {
  int first;
  int second;
};

std::optional<NumberPair> ParsePair(std::string_view text, char between, int least) {
  const std::size_t middle = text.find(between);
  if (middle == std::string_view::npos) return {};
  const auto first = ParseNumber(text.substr(0, middle), least, kLongestSide);
  const auto second = ParseNumber(text.substr(middle + 1), least, kLongestSide);
  return first && second ? std::optional(NumberPair{*first, *second}) : std::nullopt;
}

Lines ReadLines(const std::filesystem::path& file) {
  Lines lines;
  std::ifstream stream(file, std::ios::binary);
  for (std::string line; std::getline(stream, line);) {
    if (const std::size_t equals = line.find('='); equals != std::string::npos) {
      lines[line.substr(0, equals)] = line.substr(equals + 1);
    }
  }
  return lines;
}

}  // namespace

std::optional<PageSize> ParsePageSize(const std::string& text) {
  const auto pair = ParsePair(text, 'x', kShortestSide);
  return pair ? std::optional(PageSize{pair->first, pair->second}) : std::nullopt;
}

std::optional<PagePoint> ParsePagePoint(const std::string& text) {
  const auto pair = ParsePair(text, ',', 0);
  return pair ? std::optional(PagePoint{pair->first, pair->second}) : std::nullopt;
}

std::optional<BuiltPages> ReadBuiltPages(const std::filesystem::path& file) {
  Lines lines = ReadLines(file);
  const auto size = ParseNumber(lines["size"], kSmallestFontPx, kLargestFontPx);
  const auto page = ParsePageSize(lines["page"]);
  const auto spacing = ParseNumber(lines["spacing"], 0, 2);
  if (lines["font"].empty() || !size || !page || !spacing) return {};
  BuiltPages built;
  built.setup.font = lines["font"];
  built.setup.sizePx = *size;
  built.setup.width = page->width;
  built.setup.height = page->height;
  built.setup.spacing = *spacing;
  built.textHash = lines["text"];
  built.fontHash = lines["advances"];
  if (!lines["encoding"].empty()) built.setup.encoding = lines["encoding"];
  if (lines["lost"] == "replace") built.setup.lost = LostText::Replace;
  return built;
}

void WriteBuiltPages(const std::filesystem::path& file, const BuiltPages& built) {
  const PageSetup& setup = built.setup;
  const std::string lines = "font=" + setup.font + "\nsize=" + std::to_string(setup.sizePx) +
                            "\npage=" + std::to_string(setup.width) + "x" + std::to_string(setup.height) +
                            "\nspacing=" + std::to_string(setup.spacing) + "\nencoding=" + setup.encoding.value_or("") +
                            "\nlost=" + (setup.lost == LostText::Replace ? "replace" : "refuse") +
                            "\ntext=" + built.textHash + "\nadvances=" + built.fontHash + "\n";
  NewFile settings(file);
  settings.Write(lines.data(), lines.size());
  settings.PutInPlace();
}

}  // namespace tavimo::host
