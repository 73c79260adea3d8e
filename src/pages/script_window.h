// A script read from front to back in large pieces, unscrambled on the way.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "pages/script_scrambling.h"
#include "platform/files.h"

namespace tavimo::pages {

class ScriptWindow {
 public:
  static constexpr std::size_t kRoom = 64 * 1024;

  // Begins at the stream's position, which is to be the start of the script.
  ScriptWindow(platform::FileStream& script, Scrambling scrambling) noexcept
      : script_(script), scrambling_(scrambling) {}

  // Reads on until wanted bytes lie ahead or the script ends; false when reading fails. REQUIRES: wanted <= kRoom.
  [[nodiscard]] bool Fill(std::size_t wanted) noexcept;

  // What was read and not passed. The byte behind it may be written too.
  [[nodiscard]] std::span<std::uint8_t> Ahead() noexcept { return {bytes_.data() + begin_, end_ - begin_}; }

  // REQUIRES: byteCount <= Ahead().size().
  void Pass(std::size_t byteCount) noexcept { begin_ += byteCount; }

 private:
  platform::FileStream& script_;
  Scrambling scrambling_;
  std::uint64_t bytesRead_ = 0;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool hasEnded_ = false;
  std::array<std::uint8_t, kRoom + 1> bytes_;
};

}  // namespace tavimo::pages
