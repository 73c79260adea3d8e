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

bool IsAbbreviation(std::string_view gbk, std::size_t point) {
  std::size_t begin = point;
  while (begin > 0 && IsLetter(gbk[begin - 1])) --begin;
  const std::string_view word = gbk.substr(begin, point - begin);
  return word.size() == 1 ? word != "I" && !IsSmallLetter(word[0]) : IsOneOf(word, kAbbreviations);
}

// What stands at a mark that may end a sentence.
struct MarkRun {
  std::size_t end = 0;         // behind the marks and the closing quotes, and behind the blanks where a sentence ends
  bool isSentenceEnd = false;  // not so in 3.14, e.g. or Mr.
};

MarkRun ReadMarks(std::string_view gbk, std::size_t mark) {
  const bool isChinese = static_cast<unsigned char>(gbk[mark]) >= 0x80;
  if (gbk[mark] == '.' && IsAbbreviation(gbk, mark)) return {mark + 1, false};
  std::size_t end = mark;
  while (end < gbk.size() && (IsOneOf(CharacterAt(gbk, end), kEnds) || IsOneOf(CharacterAt(gbk, end), kClosings))) {
    end += CharacterAt(gbk, end).size();
  }
  if (isChinese || end == gbk.size() || static_cast<unsigned char>(gbk[end]) >= 0x80) return {end, true};
  if (!IsBlank(gbk[end])) return {end, false};
  std::size_t next = end;
  while (next < gbk.size() && IsBlank(gbk[next])) ++next;
  return next < gbk.size() && IsSmallLetter(gbk[next]) ? MarkRun{end, false} : MarkRun{next, true};
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

std::string Utf8FromCharacter(std::string_view gbk) {
  const auto lead = static_cast<unsigned char>(gbk[0]);
  const bool isPlain = lead >= ' ' && lead < 0x7F;  // most of a script, and worth the short way
  if (isPlain) return std::string(gbk);
  std::array<char, 8> converted{};
  const int size = tvUtf8FromGbk(std::string(gbk).c_str(), converted.data(), static_cast<int>(converted.size()));
  return size > 1 ? ReadableText(converted.data()) : "\xEF\xBF\xBD";
}

}  // namespace

std::size_t GbkCharacterBytes(std::string_view gbk, std::size_t place) {
  const auto lead = static_cast<unsigned char>(gbk[place]);
  return lead > 0x80 && lead < 0xFF && place + 1 < gbk.size() ? 2 : 1;
}

std::string Utf8FromGbkText(std::string_view gbk) {
  std::string utf8;
  for (std::size_t at = 0; at < gbk.size();) {
    const std::string_view character = CharacterAt(gbk, at);
    utf8 += Utf8FromCharacter(character);
    at += character.size();
  }
  return utf8;
}

void SentenceReader::ReadNextLine() {
  lineEnd_ = end_;
  while (lineEnd_ < gbk_.size() && (gbk_[lineEnd_] != '\n' || GoesOn(gbk_, lineEnd_))) ++lineEnd_;
  if (lineEnd_ < gbk_.size()) ++lineEnd_;
}

void SentenceReader::ReadNextSentence() {
  if (end_ == lineEnd_) ReadNextLine();
  const std::string_view line = gbk_.substr(0, lineEnd_);
  begin_ = cut_ = end_;
  while (end_ < lineEnd_) {
    const std::string_view character = CharacterAt(line, end_);
    if (!IsOneOf(character, kEnds)) {
      end_ += character.size();
      continue;
    }
    const MarkRun run = ReadMarks(line, end_);
    end_ = run.end;
    if (run.isSentenceEnd) return;
  }
}

std::string SentenceReader::Around(std::size_t place) {
  constexpr std::size_t kShownBytes = 200;  // before the place, and behind it
  while (end_ <= place && end_ < gbk_.size()) ReadNextSentence();
  while (cut_ + kShownBytes < place) cut_ += CharacterAt(gbk_, cut_).size();
  std::size_t cutEnd = cut_;
  while (cutEnd < end_ && cutEnd < place + kShownBytes) cutEnd += CharacterAt(gbk_, cutEnd).size();
  const std::string shown = Utf8FromGbkText(Tidied(gbk_.substr(cut_, cutEnd - cut_)));
  constexpr const char* kEllipsis = "\xE2\x80\xA6";
  return (cut_ > begin_ ? kEllipsis : "") + shown + (cutEnd < end_ ? kEllipsis : "");
}

}  // namespace tavimo::host
