// Digits, colon, point, hyphen and the letters of "sentence" and "take" as five by seven pixels, painted into a picture.
// For the numbers and labels on wave pictures, which then need no font; not for text.
#pragma once

#include <string_view>

#include "tavimo_host.h"

namespace tavimo::host {

inline constexpr int kDigitWidth = 5;
inline constexpr int kDigitHeight = 7;
inline constexpr int kDigitAdvance = 6;

[[nodiscard]] constexpr int DigitsWidth(std::string_view text) {
  return static_cast<int>(text.size()) * kDigitAdvance - 1;
}

// Other characters are left blank.
void DrawDigits(VcDc picture, int x, int y, std::string_view text, std::uint32_t colour);

}  // namespace tavimo::host
