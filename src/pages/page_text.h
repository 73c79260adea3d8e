// The text of one page, as it is read from the script and laid out.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavimo::pages {

inline constexpr std::size_t kMaxPageBytes = 4988;

// The bytes of a page, at most kMaxPageBytes, and zeros behind them: the first zero is the end of the text.
using PageText = std::array<std::uint8_t, 5000>;

}  // namespace tavimo::pages
