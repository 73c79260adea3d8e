#include "text_sentences.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace {

constexpr auto kEnds = std::to_array<std::string_view>({".", "!", "?", "\xA1\xA3", "\xA3\xA1", "\xA3\xBF", "\xA1\xAD"});
// Closing quotes and brackets go with the sentence they close: " ' ) ” ’ 」 』 ）
constexpr auto kClosings =
    std::to_array<std::string_view>({"\"", "'", ")", "\xA1\xB1", "\xA1\xAF", "\xA1\xB9", "\xA1\xBB", "\xA3\xA9"});
constexpr auto kAbbreviations = std::to_array<std::string_view>({"Mr", "Mrs", "Ms", "Dr", "St", "No"});

template <std::size_t kCount>
bool IsOneOf(std::string_view character, const std::array<std::string_view, kCount>& characters) {
  return std::find(characters.begin(), characters.end(), character) != characters.end();
}

std::string_view CharacterAt(std::string_view gbk, std::size_t place) {
  return gbk.substr(place, GbkCharacterBytes(gbk, place));
}

bool IsBlank(char byte) { return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n'; }
bool IsSmallLetter(char byte) { return byte >= 'a' && byte <= 'z'; }
bool IsLetter(char byte) { return IsSmallLetter(byte) || (byte >= 'A' && byte <= 'Z'); }

// Where the line before goes on after a line feed.
bool GoesOn(std::string_view gbk, std::size_t lineFeed) {
  return lineFeed + 1 < gbk.size() && IsSmallLetter(gbk[lineFeed + 1]);
}

// The line around a place, with those that go on with it.
std::string_view LinesAround(std::string_view gbk, std::size_t place) {
  std::size_t begin = place;
  while (begin > 0 && (gbk[begin - 1] != '\n' || GoesOn(gbk, begin - 1))) --begin;
  std::size_t end = place;
  while (end < gbk.size() && (gbk[end] != '\n' || GoesOn(gbk, end))) ++end;
  return gbk.substr(begin, end - begin);
}

bool IsAbbreviation(std::string_view gbk, std::size_t point) {
  std::size_t begin = point;
  while (begin > 0 && IsLetter(gbk[begin - 1])) --begin;
  const std::string_view word = gbk.substr(begin, point - begin);
  return word.size() == 1 ? word != "I" && !IsSmallLetter(word[0]) : IsOneOf(word, kAbbreviations);
}

// The place behind a sentence that ends with the mark at a place; 0 where none ends there: in 3.14, e.g. or Mr.
std::size_t EndOfSentence(std::string_view gbk, std::size_t mark) {
  const bool isChinese = static_cast<unsigned char>(gbk[mark]) >= 0x80;
  if (gbk[mark] == '.' && IsAbbreviation(gbk, mark)) return 0;
  std::size_t end = mark;
  while (end < gbk.size() && (IsOneOf(CharacterAt(gbk, end), kEnds) || IsOneOf(CharacterAt(gbk, end), kClosings))) {
    end += CharacterAt(gbk, end).size();
  }
  if (isChinese || end == gbk.size() || static_cast<unsigned char>(gbk[end]) >= 0x80) return end;
  if (!IsBlank(gbk[end])) return 0;
  while (end < gbk.size() && IsBlank(gbk[end])) ++end;
  return end < gbk.size() && IsSmallLetter(gbk[end]) ? 0 : end;
}

// One blank for those in a row, none at the ends.
std::string Tidied(std::string_view gbk) {
  if (gbk.starts_with("@@")) gbk.remove_prefix(2);
  std::string tidy;
  for (std::size_t at = 0; at < gbk.size();) {
    const std::string_view character = CharacterAt(gbk, at);
    const bool isBlank = IsBlank(character[0]) || character == "\xA1\xA1";
    if (!isBlank) tidy += character;
    if (isBlank && !tidy.empty() && tidy.back() != ' ') tidy += ' ';
    at += character.size();
  }
  while (!tidy.empty() && tidy.back() == ' ') tidy.pop_back();
  return tidy;
}

}  // namespace

std::size_t GbkCharacterBytes(std::string_view gbk, std::size_t place) {
  const auto lead = static_cast<unsigned char>(gbk[place]);
  return lead > 0x80 && lead < 0xFF && place + 1 < gbk.size() ? 2 : 1;
}

std::string Utf8FromGbkText(std::string_view gbk) {
  std::string utf8;
  for (std::size_t at = 0; at < gbk.size();) {
    const std::string character(CharacterAt(gbk, at));
    std::array<char, 8> converted{};
    const int size = tvUtf8FromGbk(character.c_str(), converted.data(), static_cast<int>(converted.size()));
    utf8 += size > 1 ? ReadableText(converted.data()) : std::string("\xEF\xBF\xBD");
    at += character.size();
  }
  return utf8;
}

std::string SentenceAround(const std::string& gbk, std::size_t place) {
  const std::string_view lines = LinesAround(gbk, place);
  const std::size_t target = place - static_cast<std::size_t>(lines.data() - gbk.data());
  std::size_t begin = 0;
  for (std::size_t at = 0; at < lines.size();) {
    const std::string_view character = CharacterAt(lines, at);
    const std::size_t end = IsOneOf(character, kEnds) ? EndOfSentence(lines, at) : 0;
    if (end > target) return Utf8FromGbkText(Tidied(lines.substr(begin, end - begin)));
    if (end > 0) begin = end;
    at = std::max(end, at + character.size());
  }
  return Utf8FromGbkText(Tidied(lines.substr(begin)));
}

}  // namespace tavimo::host
