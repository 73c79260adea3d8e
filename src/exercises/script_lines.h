// The lines of a question script, read in large pieces, each byte looked at once. Knows nothing of what they mean.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/files.h"

namespace tavimo::exercises {

inline constexpr std::size_t kLongestLine = 7997;

class ScriptLines {
 public:
  using Piece = std::array<char, 256 * 1024>;

  // The piece is work space for as long as lines are read.
  ScriptLines(platform::FileStream& script, Piece& piece) noexcept : script_(script), piece_(piece) {}

  // The next line with its line feed; what is longer than kLongestLine goes on as a line of its own. Empty at the end,
  // and where the script cannot be read any further. Valid until the next call.
  [[nodiscard]] std::string_view Next() noexcept;

  // That of the line read last, from 1.
  [[nodiscard]] std::uint32_t LineNumber() const noexcept { return lineNumber_; }

 private:
  [[nodiscard]] std::size_t LineBytes() const noexcept;
  void Refill() noexcept;

  platform::FileStream& script_;
  Piece& piece_;
  std::size_t begin_ = 0;  // of what lies ready in the piece
  std::size_t end_ = 0;
  std::uint32_t lineNumber_ = 0;
  bool isAtEnd_ = false;
};

}  // namespace tavimo::exercises
