// A reader of INI files, line by line, without asking for memory. Nothing is kept between calls and nothing is written.
#include "platform/profile.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/files.h"
#include "platform/text.h"

namespace tavimo::platform {

namespace {

enum class Encoding { Gbk, Utf8, Utf16 };  // the last with the low byte first, as editors write it

constexpr int kEnd = -1;
constexpr int kNoGbkForm = '?';

// The lines of a file, in GBK.
class ProfileLines {
 public:
  explicit ProfileLines(const char* path) : stream_(FileStream::Open(path, OpenMode::Read)) {
    if (TakeMark("\xEF\xBB\xBF")) encoding_ = Encoding::Utf8;
    if (TakeMark("\xFF\xFE")) encoding_ = Encoding::Utf16;
  }

  // False at the end of the file. A zero ends what counts of a line.
  bool Next() {
    length_ = 0;
    bool isCut = false;
    int code = NextCode();
    if (code == kEnd) return false;
    for (; code != kEnd && code != '\r' && code != '\n'; code = NextCode()) {
      isCut = isCut || code == 0 || length_ + 2 >= line_.size();
      if (isCut) continue;
      if (code > 0xFF) line_[length_++] = static_cast<char>(code >> 8);
      line_[length_++] = static_cast<char>(code & 0xFF);
    }
    return true;
  }

  // Valid until the next line is read.
  [[nodiscard]] std::string_view Line() const { return {line_.data(), length_}; }

 private:
  // Makes sure that some bytes wait, unless the file ends; how many do.
  std::size_t Wait(std::size_t byteCount) {
    if (end_ - start_ < byteCount && !isAtEnd_) {
      std::memmove(bytes_.data(), bytes_.data() + start_, end_ - start_);
      end_ -= start_;
      start_ = 0;
      const std::int64_t room = static_cast<std::int64_t>(bytes_.size() - end_);
      const std::int64_t count = std::max<std::int64_t>(stream_.Read(bytes_.data() + end_, room), 0);
      isAtEnd_ = count < room;
      end_ += static_cast<std::size_t>(count);
    }
    return end_ - start_;
  }

  std::string_view Waiting() const { return {bytes_.data() + start_, end_ - start_}; }

  bool TakeMark(std::string_view mark) {
    Wait(mark.size());
    if (!Waiting().starts_with(mark)) return false;
    start_ += mark.size();
    return true;
  }

  // One byte of GBK text, or one GBK character of text in another encoding; kEnd at the end.
  int NextCode() {
    const std::size_t waiting = Wait(4);
    if (waiting == 0) return kEnd;
    const auto first = static_cast<unsigned char>(bytes_[start_++]);
    if (encoding_ == Encoding::Utf8 && first >= 0x80) return TakeUtf8();
    if (encoding_ != Encoding::Utf16) return first;
    const int second = waiting > 1 ? static_cast<unsigned char>(bytes_[start_++]) : 0;
    const int code = GbkFromUnicode(static_cast<char32_t>(second << 8 | first));
    return code < 0 ? kNoGbkForm : code;
  }

  // The character whose first byte was taken just now.
  int TakeUtf8() {
    const std::size_t first = start_ - 1;
    while (start_ < end_ && start_ - first < 4 && (static_cast<unsigned char>(bytes_[start_]) & 0xC0) == 0x80) ++start_;
    char gbk[3];
    const int byteCount = GbkFromUtf8({bytes_.data() + first, start_ - first}, gbk, sizeof gbk);
    const auto lead = static_cast<unsigned char>(gbk[0]);
    if (byteCount < 1) return kNoGbkForm;
    return byteCount == 1 ? lead : lead << 8 | static_cast<unsigned char>(gbk[1]);
  }

  FileStream stream_;
  Encoding encoding_ = Encoding::Gbk;
  bool isAtEnd_ = false;
  std::size_t start_ = 0;
  std::size_t end_ = 0;
  std::size_t length_ = 0;
  std::array<char, 4096> bytes_;
  std::array<char, 4096> line_;
};

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\v\f";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

// One pair of equal quotes around a text is taken away, with it the reason why blanks inside were kept.
std::string_view Unquoted(std::string_view text) {
  const bool isQuoted = text.size() > 1 && (text[0] == '"' || text[0] == '\'') && text.back() == text[0];
  return isQuoted ? text.substr(1, text.size() - 2) : text;
}

// The second byte of a character may be a letter's or a bracket's: it is compared as it is.
bool IsSameName(std::string_view left, std::string_view right) {
  const auto folded = [](char byte) { return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte; };
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (folded(left[i]) != folded(right[i])) return false;
    if (!IsLeadByte(left[i]) || i + 1 == left.size()) continue;
    ++i;
    if (left[i] != right[i]) return false;
  }
  return true;
}

std::size_t FindClosingBracket(std::string_view line) {
  for (std::size_t i = 0; i < line.size(); i += IsLeadByte(line[i]) ? 2 : 1) {
    if (line[i] == ']') return i;
  }
  return std::string_view::npos;
}

// Goes to the line behind the header of a section; the section without a name is what stands before the first header.
bool FindSection(ProfileLines& lines, std::string_view section) {
  if (section.empty()) return true;
  while (lines.Next()) {
    const std::string_view line = Trimmed(lines.Line());
    const std::size_t close = line.starts_with('[') ? FindClosingBracket(line) : std::string_view::npos;
    if (close != std::string_view::npos && IsSameName(Trimmed(line.substr(1, close - 1)), section)) return true;
  }
  return false;
}

// The value of a key between the current line and the next header; false when there is none.
bool FindKey(ProfileLines& lines, std::string_view key, std::string_view& value) {
  while (lines.Next()) {
    const std::string_view line = Trimmed(lines.Line());
    if (line.starts_with('[') && FindClosingBracket(line) != std::string_view::npos) return false;
    const std::size_t equals = line.find('=');
    if (line.starts_with(';') || equals == std::string_view::npos) continue;
    if (!IsSameName(Trimmed(line.substr(0, equals)), key)) continue;
    value = Unquoted(Trimmed(line.substr(equals + 1)));
    return true;
  }
  return false;
}

int Deliver(std::string_view value, char* text, int size) {
  const std::size_t length = WholeCharacterBytes(value, static_cast<std::size_t>(size) - 1);
  value.copy(text, length);
  text[length] = '\0';
  return static_cast<int>(length);
}

}  // namespace

int GetProfileText(const char* section, const char* key, const char* fallback, char* text, int size,
                   const char* path) noexcept {
  if (text == nullptr || size < 1) return 0;
  std::string_view value;
  if (section != nullptr && key != nullptr) {
    ProfileLines lines(path);
    if (FindSection(lines, Trimmed(section)) && FindKey(lines, Trimmed(key), value)) return Deliver(value, text, size);
  }
  value = fallback == nullptr ? "" : fallback;
  return Deliver(Unquoted(value.substr(0, value.find_last_not_of(" \t") + 1)), text, size);
}

}  // namespace tavimo::platform
