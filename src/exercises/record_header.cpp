#include "exercises/record_header.h"

#include <algorithm>
#include <limits>

#include "exercises/question_record.h"

namespace tavimo::exercises {

namespace {

bool Take(std::string_view& text, char upper, char lower) noexcept {
  if (text.empty() || (text[0] != upper && text[0] != lower)) return false;
  text.remove_prefix(1);
  return true;
}

// Held at the largest value, so that a number of any length stays wrong instead of wrapping to a right one.
std::uint32_t TakeNumber(std::string_view& text) noexcept {
  std::uint64_t number = 0;
  for (; !text.empty() && text[0] >= '0' && text[0] <= '9'; text.remove_prefix(1)) {
    const auto digit = static_cast<std::uint64_t>(text[0] - '0');
    number = std::min<std::uint64_t>(number * 10 + digit, std::numeric_limits<std::uint32_t>::max());
  }
  return static_cast<std::uint32_t>(number);
}

std::optional<std::int32_t> TypeOfDigit(char digit) noexcept {
  switch (digit) {
    case '1':
      return kQuestion;
    case '2':
      return kPassageQuestion;
    case '3':
      return kPassage;
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<RecordHeader> ParseRecordHeader(std::string_view line) noexcept {
  if (!line.starts_with("##")) return std::nullopt;
  line.remove_prefix(2);
  if (!Take(line, 'N', 'n')) return std::nullopt;
  const std::uint32_t number = TakeNumber(line);
  if (!Take(line, 'T', 't') || line.empty()) return std::nullopt;
  const std::optional<std::int32_t> type = TypeOfDigit(line[0]);
  if (!type) return std::nullopt;
  return RecordHeader{*type, number};
}

}  // namespace tavimo::exercises
