// Reading a digest level after level, in pieces large enough that the file system does not count. Used by drawing and
// by segmentation; knows nothing of what the levels mean.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <span>

#include "platform/files.h"

namespace tavimo::digest {

class LevelReader {
 public:
  // Starts at a level by its index; one past the end gives no levels.
  LevelReader(platform::FileStream& stream, std::int64_t firstLevel) noexcept : stream_(stream) {
    stream_.Seek(firstLevel, platform::SeekFrom::Start);
  }

  // The levels that lie ready, at least one unless the digest has ended. Valid until the next call.
  [[nodiscard]] std::span<const std::uint8_t> Ready() noexcept {
    if (next_ == end_) Refill();
    return std::span(buffer_).subspan(next_, end_ - next_);
  }

  // Takes levels that Ready showed.
  void Skip(std::size_t count) noexcept { next_ += count; }

  // Adds up the next levelCount levels. False, with all the rest taken, when the digest ends before.
  [[nodiscard]] bool Sum(std::int64_t levelCount, std::int64_t& sum) noexcept {
    sum = 0;
    while (levelCount > 0) {
      const std::span<const std::uint8_t> ready = Ready();
      if (ready.empty()) return false;
      const auto taken = static_cast<std::size_t>(std::min(levelCount, static_cast<std::int64_t>(ready.size())));
      sum += std::accumulate(ready.begin(), ready.begin() + static_cast<std::ptrdiff_t>(taken), std::uint32_t{0});
      Skip(taken);
      levelCount -= static_cast<std::int64_t>(taken);
    }
    return true;
  }

 private:
  void Refill() noexcept {
    next_ = 0;
    end_ = static_cast<std::size_t>(
        std::max<std::int64_t>(stream_.Read(buffer_.data(), static_cast<std::int64_t>(buffer_.size())), 0));
  }

  platform::FileStream& stream_;
  std::array<std::uint8_t, 16384> buffer_;
  std::size_t next_ = 0;
  std::size_t end_ = 0;
};

}  // namespace tavimo::digest
