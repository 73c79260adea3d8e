#include "exercises/sentence_list.h"

#include <array>
#include <charconv>
#include <cstring>
#include <span>
#include <string_view>

#include "core/arithmetic.h"
#include "exercises/question_index.h"
#include "platform/gbk_literal.h"

namespace tavimo::exercises {

using namespace platform::literals;

namespace {

// A line with its zero byte, in a room that one instruction copies: "No.-2147483648" is the longest.
struct Line {
  static constexpr std::size_t kRoom = 16;

  std::array<char, kRoom> text{};
  std::size_t byteCount = 0;
};

constexpr Line LineOf(std::string_view text) noexcept {
  Line line;
  for (const char byte : text) line.text[line.byteCount++] = byte;
  ++line.byteCount;
  return line;
}

constexpr Line kDialogueLine = LineOf(u8"  长对话"_gbk);
constexpr Line kPassageLine = LineOf(u8"  短文"_gbk);

// The lines of numbered items. The rule: the number in decimal. Items are numbered one after another, so nine times of
// ten the last digit alone differs from the line before. It is written into the copy of the line, because a processor
// that has just written one byte of a line waits before it copies the whole of it.
class NumberedLines {
 public:
  // The room takes a whole line, however long it is. The bytes of the line.
  std::size_t Write(std::int32_t number, char* room) noexcept {
    if (number < 0 || number / 10 != tens_) BeginTens(number);
    std::memcpy(room, line_.text.data(), Line::kRoom);
    if (number >= 0) room[line_.byteCount - 2] = static_cast<char>('0' + number % 10);
    return line_.byteCount;
  }

 private:
  void BeginTens(std::int32_t number) noexcept {
    constexpr std::size_t kPrefixBytes = 3;
    char* const begin = line_.text.data();
    char* const end = std::to_chars(begin + kPrefixBytes, begin + Line::kRoom - 1, number).ptr;
    *end = '\0';
    line_.byteCount = static_cast<std::size_t>(end + 1 - begin);
    tens_ = number < 0 ? -1 : number / 10;
  }

  Line line_ = LineOf("No.");
  std::int32_t tens_ = -1;  // of the number in the line; -1: none that may be used again
};

// The lines of a piece of the index, in one block: a bank has many thousands, each a few bytes long.
class ListPiece {
 public:
  // Valid until the next call.
  [[nodiscard]] platform::ListLines LinesOf(std::span<const QuestionRecordBytes> records) noexcept {
    std::size_t end = 0;
    std::size_t count = 0;
    for (const QuestionRecordBytes& bytes : records) {
      const std::size_t byteCount = Write(ReadQuestionRecord(bytes.data()), text_.data() + end);
      starts_[count] = static_cast<std::uint32_t>(end);
      end += byteCount;
      count += byteCount > 0 ? 1 : 0;
    }
    return {text_.data(), end, std::span(starts_).first(count)};
  }

 private:
  // 0 for an item of an unknown type, which has no line.
  std::size_t Write(const QuestionRecord& record, char* room) noexcept {
    switch (record.type) {
      case kLongDialogue:
        return Write(kDialogueLine, room);
      case kPassage:
        return Write(kPassageLine, room);
      case kQuestion:
      case kPassageQuestion:
        return numbered_.Write(core::WrappingAdd(record.ordinal, 1), room);
      default:
        return 0;
    }
  }

  static std::size_t Write(const Line& line, char* room) noexcept {
    std::memcpy(room, line.text.data(), Line::kRoom);
    return line.byteCount;
  }

  NumberedLines numbered_;
  std::array<char, RecordReader::kMostRecords * Line::kRoom> text_;
  std::array<std::uint32_t, RecordReader::kMostRecords> starts_;
};

}  // namespace

void FillSentenceList(platform::FileStream& index, VcWindow listBox) noexcept {
  RecordReader reader(index);
  ListPiece lines;
  for (auto piece = reader.NextPiece(); !piece.empty(); piece = reader.NextPiece()) {
    platform::AddToListBox(listBox, lines.LinesOf(piece));
  }
}

}  // namespace tavimo::exercises
