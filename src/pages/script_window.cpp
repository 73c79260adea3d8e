#include "pages/script_window.h"

#include <cstring>

namespace tavimo::pages {

bool ScriptWindow::Fill(std::size_t wanted) noexcept {
  if (end_ - begin_ >= wanted || hasEnded_) return true;
  std::memmove(bytes_.data(), bytes_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  const std::size_t room = kRoom - end_;
  const std::int64_t got = script_.Read(bytes_.data() + end_, static_cast<std::int64_t>(room));
  if (got < 0) return false;
  const auto byteCount = static_cast<std::size_t>(got);
  Unscramble({bytes_.data() + end_, byteCount}, bytesRead_, scrambling_);
  bytesRead_ += byteCount;
  end_ += byteCount;
  hasEnded_ = byteCount < room;
  return true;
}

}  // namespace tavimo::pages
