#include "exercises/sentence_list.h"

#include <charconv>

#include "core/arithmetic.h"
#include "platform/gbk_literal.h"

namespace tavimo::exercises {

using namespace platform::literals;

const char* ListLines::LineOf(const QuestionRecord& record) noexcept {
  switch (record.type) {
    case kLongDialogue:
      return u8"  长对话"_gbk;
    case kPassage:
      return u8"  短文"_gbk;
    case kQuestion:
    case kPassageQuestion:
      PutNumber(core::WrappingAdd(record.ordinal, 1));
      return room_.data();
    default:
      return nullptr;
  }
}

// The rule: the number in decimal. Items are numbered one after another, so nine times of ten the last digit alone
// changes.
void ListLines::PutNumber(std::int32_t number) noexcept {
  constexpr std::size_t kPrefixBytes = 3;
  const bool isNext = number_ >= 0 && number == number_ + 1 && *lastDigit_ != '9';
  number_ = number;
  if (isNext) {
    ++*lastDigit_;
    return;
  }
  char* end = std::to_chars(room_.data() + kPrefixBytes, room_.data() + room_.size() - 1, number).ptr;
  *end = '\0';
  lastDigit_ = end - 1;
}

}  // namespace tavimo::exercises
