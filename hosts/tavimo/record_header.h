// The line that begins a record of a question script, such as ##N5T1, and what is wrong with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tavimo::host {

enum class RecordKind { Question, PassageQuestion, Passage, Unknown };

struct RecordHeader {
  RecordKind kind = RecordKind::Unknown;
  std::uint32_t number = 0;         // 0: none was given; the largest stands for all that are larger
  std::size_t faultColumn = 0;      // from 1; 0: there is no fault
  const char* whatIsDue = nullptr;  // at the fault
};

// What a line that begins with a mark is meant to be, as far as can be told.
enum class Mark { None, Header, ChoiceMarker, MisspelledMarker, Answer, Other };

[[nodiscard]] Mark MarkOf(std::string_view line);

// Reads as far as it can be understood.
[[nodiscard]] RecordHeader ReadRecordHeader(std::string_view line);

}  // namespace tavimo::host
