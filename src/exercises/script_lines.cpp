#include "exercises/script_lines.h"

#include <algorithm>
#include <cstring>

namespace tavimo::exercises {

std::string_view ScriptLines::Next() noexcept {
  std::size_t byteCount = LineBytes();
  if (byteCount == 0 && !isAtEnd_) {
    Refill();
    byteCount = LineBytes();
  }
  if (byteCount == 0) return {};
  const std::string_view line(piece_.data() + begin_, byteCount);
  begin_ += byteCount;
  ++lineNumber_;
  return line;
}

// Of the line that begins what lies ready; 0 when its end does not, and more may come.
std::size_t ScriptLines::LineBytes() const noexcept {
  const char* start = piece_.data() + begin_;
  const std::size_t limit = std::min(end_ - begin_, kLongestLine);
  const void* feed = limit == 0 ? nullptr : std::memchr(start, '\n', limit);
  if (feed != nullptr) return static_cast<std::size_t>(static_cast<const char*>(feed) - start) + 1;
  return limit == kLongestLine || isAtEnd_ ? limit : 0;
}

void ScriptLines::Refill() noexcept {
  const std::size_t kept = end_ - begin_;
  std::memmove(piece_.data(), piece_.data() + begin_, kept);
  const auto wanted = static_cast<std::int64_t>(piece_.size() - kept);
  const std::int64_t got = std::max<std::int64_t>(script_.Read(piece_.data() + kept, wanted), 0);
  isAtEnd_ = got < wanted;
  begin_ = 0;
  end_ = kept + static_cast<std::size_t>(got);
}

}  // namespace tavimo::exercises
