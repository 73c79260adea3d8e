#include "exercises/sentence_list.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "core/arithmetic.h"
#include "platform/gbk_literal.h"

namespace tavimo::exercises {

using namespace platform::literals;

namespace {

template <std::size_t kRoom>
constexpr std::array<char, kRoom> LineOf(std::string_view text) noexcept {
  std::array<char, kRoom> line{};
  std::copy(text.begin(), text.end(), line.begin());
  return line;
}

constexpr std::string_view kDialogue = u8"  长对话"_gbk;
constexpr std::string_view kArticle = u8"  短文"_gbk;

}  // namespace

void ListPiece::Add(const QuestionRecord& record) noexcept {
  static constexpr Line kDialogueLine = LineOf<kLineRoom>(kDialogue);
  static constexpr Line kArticleLine = LineOf<kLineRoom>(kArticle);
  switch (record.type) {
    case kLongDialogue:
      return Append(kDialogueLine, kDialogue.size() + 1);
    case kPassage:
      return Append(kArticleLine, kArticle.size() + 1);
    case kQuestion:
    case kPassageQuestion:
      PutNumber(core::WrappingAdd(record.ordinal, 1));
      return Append(numbered_, numberedBytes_);
    default:
      return;
  }
}

// The rule: the number in decimal. Items are numbered one after another, so nine times of ten the last digit alone
// changes.
void ListPiece::PutNumber(std::int32_t number) noexcept {
  constexpr std::size_t kPrefixBytes = 3;
  const bool isNext = number_ >= 0 && number == number_ + 1 && numbered_[numberedBytes_ - 2] != '9';
  number_ = number;
  if (isNext) {
    ++numbered_[numberedBytes_ - 2];
    return;
  }
  char* end = std::to_chars(numbered_.data() + kPrefixBytes, numbered_.data() + kLineRoom - 1, number).ptr;
  *end = '\0';
  numberedBytes_ = static_cast<std::size_t>(end + 1 - numbered_.data());
}

// The whole room of a line is copied, as that takes one instruction; the next line begins behind this one's zero.
void ListPiece::Append(const Line& line, std::size_t byteCount) noexcept {
  std::copy(line.begin(), line.end(), text_.begin() + static_cast<std::ptrdiff_t>(end_));
  starts_[count_++] = static_cast<std::uint32_t>(end_);
  end_ += byteCount;
}

}  // namespace tavimo::exercises
