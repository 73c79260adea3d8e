// How the paths of a lesson's exercise files follow from one another. Goes by bytes and by names alone: whether the
// files exist is not asked here.
#pragma once

#include <cstddef>
#include <string_view>

#include "core/fixed_text.h"

namespace tavimo::exercises {

inline constexpr std::size_t kLongestPath = 259;  // the platform's limit of 260 with the terminating zero
using ExercisePath = core::FixedText<kLongestPath>;

// The path up to its last dot, which may stand in a folder's name but not at the very start; all of it when there is
// none.
[[nodiscard]] std::string_view WithoutExtension(std::string_view path) noexcept;

// Both are false when path is empty, or it or the result is longer than 259 bytes.

// WithoutExtension and the new extension, which includes its dot.
[[nodiscard]] bool ReplaceExtension(std::string_view path, std::string_view extension, ExercisePath& result) noexcept;

// "temp\" and the file name, which begins behind the last backslash, with a new extension.
[[nodiscard]] bool PathInTemp(std::string_view path, std::string_view extension, ExercisePath& result) noexcept;

inline constexpr std::size_t kShortestBankPath = 3;

// How many bytes stay when the path of one file of a bank becomes that of the other: all but the last three, or but two
// when a dot stands before those (x.tst, x.wz). REQUIRES: at least kShortestBankPath bytes.
[[nodiscard]] std::size_t BankStemLength(std::string_view path) noexcept;

}  // namespace tavimo::exercises
