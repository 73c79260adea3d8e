#include "exercises/sentence_list.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "core/arithmetic.h"
#include "platform/gbk_literal.h"

namespace tavimo::exercises {

using namespace platform::literals;

const char* LineOf(const QuestionRecord& record, ListLine& room) noexcept {
  constexpr std::string_view kNumber = "No.";
  switch (record.type) {
    case kLongDialogue:
      return u8"  长对话"_gbk;
    case kPassage:
      return u8"  短文"_gbk;
    case kQuestion:
    case kPassageQuestion:
      break;
    default:
      return nullptr;
  }
  char* digits = std::copy(kNumber.begin(), kNumber.end(), room.data());
  *std::to_chars(digits, room.data() + room.size() - 1, core::WrappingAdd(record.ordinal, 1)).ptr = '\0';
  return room.data();
}

}  // namespace tavimo::exercises
