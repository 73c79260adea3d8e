// A question script in the lines in which the engine reads it, and where each of them stands for whoever mends it.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace tavimo::host {

// The engine reads at most so many bytes at once; the rest of a longer line is a line of its own to it.
inline constexpr std::size_t kLongestPieceBytes = 7997;

struct ScriptPiece {
  std::string_view text;  // GBK, with the line's end
  std::size_t line = 1;   // as an editor counts, from 1
  std::size_t column = 1;
};

// The pieces point into the script.
[[nodiscard]] std::vector<ScriptPiece> PiecesOf(std::string_view gbk);

}  // namespace tavimo::host
