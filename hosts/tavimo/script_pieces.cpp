#include "script_pieces.h"

#include <algorithm>

namespace tavimo::host {

std::vector<ScriptPiece> PiecesOf(std::string_view gbk) {
  std::vector<ScriptPiece> pieces;
  std::size_t line = 1;
  std::size_t column = 1;
  std::size_t counted = 0;  // up to here for the column; a piece may end within a character
  for (std::size_t at = 0; at < gbk.size();) {
    const std::string_view most = gbk.substr(at, kLongestPieceBytes);
    const std::size_t length = std::min(most.find('\n'), most.size() - 1) + 1;
    pieces.push_back({gbk.substr(at, length), line, column});
    at += length;
    if (gbk[at - 1] == '\n') {
      ++line;
      column = 1;
      counted = at;
    }
    for (; counted < at; ++column) counted += static_cast<unsigned char>(gbk[counted]) > 0x80 ? 2 : 1;
  }
  return pieces;
}

}  // namespace tavimo::host
