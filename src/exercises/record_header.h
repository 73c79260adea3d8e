// The header line of a record in a question script: "##N", the record's number, "T" and a type digit, as in "##N12T1".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tavimo::exercises {

struct RecordHeader {
  std::int32_t type = 0;
  std::uint32_t number = 0;  // 0 when the author left it open; 0xFFFFFFFF for any that is too large
};

// Nothing for a line of another form or an unknown type digit. What follows the digit is the author's own.
[[nodiscard]] std::optional<RecordHeader> ParseRecordHeader(std::string_view line) noexcept;

}  // namespace tavimo::exercises
