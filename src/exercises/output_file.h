// A file that is written from its start to its end in large pieces. It takes the place of an earlier one at once:
// authors look at what a failed compilation wrote so far.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/files.h"

namespace tavimo::exercises {

class OutputFile {
 public:
  // The piece is work space until the file is finished.
  explicit OutputFile(std::span<char> piece) noexcept : piece_(piece) {}
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  ~OutputFile() { Finish(); }

  [[nodiscard]] bool Create(const char* path) noexcept;

  // REQUIRES: at most a piece of bytes.
  void Add(std::string_view bytes) noexcept;

  // Writes what is left and closes. False when any byte since Create did not reach the file.
  bool Finish() noexcept;

 private:
  void WritePiece() noexcept;

  std::span<char> piece_;
  std::size_t pieceBytes_ = 0;
  std::int64_t end_ = 0;  // of what was written or should have been
  bool isWhole_ = true;
  platform::FileStream file_;
};

}  // namespace tavimo::exercises
