#include "exercises/sentence_list.h"

#include <algorithm>
#include <charconv>
#include <cstring>
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
      return AddNumbered(core::WrappingAdd(record.ordinal, 1));
    default:
      return;
  }
}

// The rule: the number in decimal. Items are numbered one after another, so nine times of ten the last digit alone
// differs from the line before. It is written into the piece, because a processor that has just written a byte of a line
// waits before it copies the whole of it.
void ListPiece::AddNumbered(std::int32_t number) noexcept {
  constexpr std::size_t kPrefixBytes = 3;
  if (number < 0 || number / 10 != tens_) {
    char* end = std::to_chars(numbered_.data() + kPrefixBytes, numbered_.data() + kLineRoom - 1, number).ptr;
    *end = '\0';
    numberedBytes_ = static_cast<std::size_t>(end + 1 - numbered_.data());
    tens_ = number < 0 ? -1 : number / 10;
  }
  Append(numbered_, numberedBytes_);
  if (number >= 0) text_[end_ - 2] = static_cast<char>('0' + number % 10);
}

// The whole room of a line is copied, as that takes one instruction; the next line begins behind this one's zero.
void ListPiece::Append(const Line& line, std::size_t byteCount) noexcept {
  std::memcpy(text_.data() + end_, line.data(), line.size());
  starts_[count_++] = static_cast<std::uint32_t>(end_);
  end_ += byteCount;
}

}  // namespace tavimo::exercises
