#include "exercises/sentence_list.h"

#include <charconv>
#include <cstring>
#include <string_view>

#include "core/arithmetic.h"
#include "platform/gbk_literal.h"

namespace tavimo::exercises {

using namespace platform::literals;

namespace {

struct Line {
  std::array<char, kListLineRoom> text{};
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

std::size_t Write(const Line& line, char* room) noexcept {
  std::memcpy(room, line.text.data(), line.text.size());
  return line.byteCount;
}

}  // namespace

std::size_t NumberedLines::WriteNegative(std::int32_t number, char* room) noexcept {
  constexpr std::string_view kPrefix = "No.";
  std::memcpy(room, kPrefix.data(), kPrefix.size());
  char* const end = std::to_chars(room + kPrefix.size(), room + kListLineRoom - 1, number).ptr;
  *end = '\0';
  return static_cast<std::size_t>(end + 1 - room);
}

void NumberedLines::BeginTens(std::uint32_t tens) noexcept {
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

void NumberedLines::PutInFront(std::uint32_t character) noexcept {
  high_ = high_ << 8 | low_ >> 56;
  low_ = low_ << 8 | character;
  ++byteCount_;
}

platform::ListLines ListPiece::LinesOf(std::span<const ListedItem> items) noexcept {
  std::size_t end = 0;
  std::size_t count = 0;
  for (const ListedItem item : items) {
    const std::size_t byteCount = Write(item, text_.data() + end);
    starts_[count] = static_cast<std::uint32_t>(end);
    end += byteCount;
    count += byteCount > 0 ? 1 : 0;
  }
  return {text_.data(), end, std::span(starts_).first(count)};
}

// 0 bytes for no line.
std::size_t ListPiece::Write(ListedItem item, char* room) noexcept {
  switch (item.type) {
    case kLongDialogue:
      return exercises::Write(kDialogueLine, room);
    case kPassage:
      return exercises::Write(kPassageLine, room);
    case kQuestion:
    case kPassageQuestion:
      return numbered_.Write(core::WrappingAdd(item.ordinal, 1), room);
    default:
      return 0;
  }
}

}  // namespace tavimo::exercises
