// The lines of the host's list of items.
#pragma once

#include <array>
#include <cstdint>

#include "exercises/question_record.h"

namespace tavimo::exercises {

class ListLines {
 public:
  // GBK, zero-terminated, valid until the next call; null for a type that is not listed.
  [[nodiscard]] const char* LineOf(const QuestionRecord& record) noexcept;

 private:
  void PutNumber(std::int32_t number) noexcept;

  std::array<char, 24> room_{'N', 'o', '.'};
  std::int32_t number_ = -1;  // in the room; negative: none that counting on may begin with
  char* lastDigit_ = nullptr;
};

}  // namespace tavimo::exercises
