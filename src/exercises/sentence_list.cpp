#include "exercises/sentence_list.h"

#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <span>
#include <string_view>

#include "core/arithmetic.h"
#include "core/little_endian.h"
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
// ten the last digit alone differs from the line before. The line is kept as two numbers, its first character in the
// lowest byte, because a processor that has just written single bytes waits before it copies them as a whole.
class NumberedLines {
 public:
  // The room takes a whole line, however long it is. The bytes of the line with its zero.
  std::size_t Write(std::int32_t number, char* room) noexcept {
    if (number < 0) return WriteNegative(number, room);
    const auto value = static_cast<std::uint32_t>(number);
    if (value / 10 != tens_) BeginTens(value / 10);
    const std::uint64_t digit = value % 10;
    auto* const bytes = reinterpret_cast<std::uint8_t*>(room);
    core::WriteU64(bytes, low_ + digit * lowUnit_);
    core::WriteU64(bytes + sizeof low_, high_ + digit * highUnit_);
    return byteCount_;
  }

 private:
  void BeginTens(std::uint32_t tens) noexcept {
    tens_ = tens;
    low_ = high_ = 0;
    byteCount_ = 1;
    PutInFront('0');
    for (std::uint32_t rest = tens; rest > 0; rest /= 10) PutInFront('0' + rest % 10);
    for (const char character : {'.', 'o', 'N'}) PutInFront(static_cast<std::uint32_t>(character));
    const std::size_t lastDigit = byteCount_ - 2;
    lowUnit_ = lastDigit < 8 ? std::uint64_t{1} << 8 * lastDigit : 0;
    highUnit_ = lastDigit < 8 ? 0 : std::uint64_t{1} << 8 * (lastDigit - 8);
  }

  void PutInFront(std::uint32_t character) noexcept {
    high_ = high_ << 8 | low_ >> 56;
    low_ = low_ << 8 | character;
    ++byteCount_;
  }

  static std::size_t WriteNegative(std::int32_t number, char* room) noexcept {
    constexpr std::string_view kPrefix = "No.";
    std::memcpy(room, kPrefix.data(), kPrefix.size());
    char* const end = std::to_chars(room + kPrefix.size(), room + Line::kRoom - 1, number).ptr;
    *end = '\0';
    return static_cast<std::size_t>(end + 1 - room);
  }

  std::uint32_t tens_ = std::numeric_limits<std::uint32_t>::max();  // that the line is of: at first of none
  std::uint64_t low_ = 0;
  std::uint64_t high_ = 0;
  std::uint64_t lowUnit_ = 0;  // what a last digit of 1 adds
  std::uint64_t highUnit_ = 0;
  std::size_t byteCount_ = 0;
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
