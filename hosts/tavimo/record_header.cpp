#include "record_header.h"

#include <algorithm>
#include <limits>

namespace tavimo::host {

namespace {

constexpr std::size_t kMarkBytes = 2;

bool IsOneOf(std::string_view line, std::size_t at, std::string_view letters) {
  return at < line.size() && letters.find(line[at]) != std::string_view::npos;
}

std::uint32_t TakeNumber(std::string_view line, std::size_t& at) {
  std::uint64_t number = 0;
  for (; IsOneOf(line, at, "0123456789"); ++at) {
    number = std::min<std::uint64_t>(number * 10 + static_cast<std::uint64_t>(line[at] - '0'),
                                     std::numeric_limits<std::uint32_t>::max());
  }
  return static_cast<std::uint32_t>(number);
}

RecordKind KindOf(char digit) {
  if (digit == '1') return RecordKind::Question;
  return digit == '2' ? RecordKind::PassageQuestion : RecordKind::Passage;
}

}  // namespace

Mark MarkOf(std::string_view line) {
  if (line.starts_with("$$")) return Mark::Answer;
  if (!line.starts_with("##")) return Mark::None;
  if (line.starts_with("##XZ")) return Mark::ChoiceMarker;
  if (IsOneOf(line, kMarkBytes, "Xx")) return Mark::MisspelledMarker;
  return IsOneOf(line, kMarkBytes, "NnTt0123456789") ? Mark::Header : Mark::Other;
}

RecordHeader ReadRecordHeader(std::string_view line) {
  RecordHeader header;
  std::size_t at = kMarkBytes;
  const auto expect = [&](std::string_view letters, const char* what) {
    if (IsOneOf(line, at, letters)) {
      ++at;
    } else if (header.faultColumn == 0) {
      header.faultColumn = at + 1;
      header.whatIsDue = what;
    }
  };
  expect("Nn", "an N and the number are due behind ##");
  header.number = TakeNumber(line, at);
  expect("Tt", "a T and the type are due behind the number");
  expect("123", "the type is 1 for a question, 2 for a question on a passage, 3 for a passage");
  const bool isTypeRead = IsOneOf(line, at - 1, "123") && IsOneOf(line, at - 2, "Tt");
  if (isTypeRead) header.kind = KindOf(line[at - 1]);
  return header;
}

}  // namespace tavimo::host
