#include "text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "tavimo_host.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr int kPathRoom = 4096;
constexpr std::int64_t kLongestTimePart = 1'000'000;  // keeps the sum far from overflow

// How many bytes of the character that text begins with are whole, valid UTF-8; 0 when none are.
std::size_t CharacterLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return 0;
  }
  const auto second = static_cast<unsigned char>(text[1]);
  const bool isOverlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool isNoCharacter = (lead == 0xED && second >= 0xA0) || (lead == 0xF4 && second >= 0x90);
  return isOverlong || isNoCharacter ? 0 : length;
}

// REQUIRES: text begins with a valid character.
bool IsControl(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  return lead < 0x20 || lead == 0x7F || (lead == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0);
}

std::optional<std::int64_t> ParseWhole(std::string_view digits) {
  std::int64_t value = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value);
  if (error != std::errc() || stop != end || digits.empty() || digits[0] == '-' || value > kLongestTimePart) return {};
  return value;
}

// The three digits after the point, the rest cut off: "5" is 500.
std::optional<std::int64_t> ParseThousandths(std::string_view digits) {
  if (!ParseWhole(digits)) return {};
  std::string three(digits.substr(0, 3));
  three.resize(3, '0');
  return ParseWhole(three);
}

}  // namespace

fs::path PathFromUtf8(std::string_view utf8) { return fs::path(std::u8string(utf8.begin(), utf8.end())); }

std::string Utf8(const fs::path& path) {
  const std::u8string utf8 = path.u8string();
  return std::string(utf8.begin(), utf8.end());
}

std::string ReadableText(std::string_view utf8) {
  std::string readable;
  while (!utf8.empty()) {
    const std::size_t length = CharacterLength(utf8);
    const bool isShown = length > 0 && !IsControl(utf8);
    readable += isShown ? utf8.substr(0, length) : std::string_view("\xEF\xBF\xBD");
    utf8.remove_prefix(length == 0 ? 1 : length);
  }
  return readable;
}

std::string Readable(const fs::path& path) { return ReadableText(Utf8(path)); }

std::string Utf8FromGbk(std::string_view gbk) {
  std::string utf8;
  for (std::size_t length = 0; !gbk.empty(); gbk.remove_prefix(length)) {
    length = std::min<std::size_t>(static_cast<unsigned char>(gbk[0]) > 0x80 ? 2 : 1, gbk.size());
    const std::string character(gbk.substr(0, length));
    std::array<char, 8> converted{};
    const bool isText = tvUtf8FromGbk(character.c_str(), converted.data(), static_cast<int>(converted.size())) > 1;
    if (!isText) length = 1;
    utf8 += isText ? converted.data() : "\xEF\xBF\xBD";
  }
  return utf8;
}

std::string Quoted(const std::string& readable) {
  std::string quoted = "\"";
  for (const char byte : readable) {
    if (byte == '"' || byte == '\\') quoted += '\\';
    quoted += byte;
  }
  return quoted + "\"";
}

std::string Shortened(std::string_view utf8, std::size_t mostBytes) {
  const auto isInsideCharacter = [utf8](std::size_t place) {
    return place < utf8.size() && (static_cast<unsigned char>(utf8[place]) & 0xC0) == 0x80;
  };
  std::size_t length = std::min(utf8.size(), mostBytes);
  while (length > 0 && isInsideCharacter(length)) --length;
  return std::string(utf8.substr(0, length));
}

std::optional<std::string> GbkFromUtf8(const std::string& utf8) {
  std::string gbk(2 * utf8.size() + 1, '\0');
  if (tvGbkFromUtf8(utf8.c_str(), gbk.data(), static_cast<int>(gbk.size())) < 0) return {};
  gbk.resize(gbk.find('\0'));
  return gbk;
}

std::optional<std::string> EnginePath(const fs::path& path) {
  std::array<char, kPathRoom> engine{};
  if (tvEnginePath(Utf8(path).c_str(), engine.data(), kPathRoom) < 0) return {};
  return std::string(engine.data());
}

std::string Counted(std::size_t count, const std::string& thing) {
  return (count == 0 ? "no" : std::to_string(count)) + " " + thing + (count == 1 ? "" : "s");
}

std::string FormatTime(std::int64_t timeMs) {
  std::array<char, 40> text{};
  const long long ms = timeMs;
  std::snprintf(text.data(), text.size(), "%lld:%02lld.%03lld", ms / 60'000, ms / 1000 % 60, ms % 1000);
  return text.data();
}

std::optional<std::int64_t> ParseTime(std::string_view text) {
  std::int64_t timeMs = 0;
  if (const std::size_t point = text.find('.'); point != std::string_view::npos) {
    const auto thousandths = ParseThousandths(text.substr(point + 1));
    if (!thousandths) return {};
    timeMs = *thousandths;
    text = text.substr(0, point);
  }
  std::int64_t unitMs = 1000;  // seconds, then minutes, then hours
  for (int part = 0; part < 3; ++part, unitMs *= 60) {
    const std::size_t colon = text.rfind(':');
    const auto value = ParseWhole(colon == std::string_view::npos ? text : text.substr(colon + 1));
    if (!value) return {};
    timeMs += *value * unitMs;
    if (colon == std::string_view::npos) return timeMs;
    text = text.substr(0, colon);
  }
  return {};
}

}  // namespace tavimo::host
