// Hears when the learner has finished speaking, from the level of one captured block after the other. A microphone's own
// noise is measured while it listens: the quietest block so far is silence, whatever its level.
#pragma once

#include <algorithm>
#include <cstdint>

namespace tavimo::host {

class SpeechEnd {
 public:
  void Take(int level, double blockMs) {
    if (level < quietest_) {
      quietest_ = level;
      quietMs_ = 0;  // what passed for silence until now was louder than this
    }
    loudest_ = std::max(loudest_, level);
    quietMs_ = level > Threshold() ? 0 : quietMs_ + blockMs;
  }

  [[nodiscard]] bool HasBegun() const { return loudest_ > Threshold(); }
  [[nodiscard]] bool IsSilentFor(std::int64_t silenceMs) const {
    return HasBegun() && quietMs_ >= static_cast<double>(silenceMs);
  }

 private:
  static constexpr int kHighestLevel = 128;

  // Levels are means over a block: room noise moves by less than a factor of two, speech is several times as loud.
  [[nodiscard]] int Threshold() const { return 2 * quietest_ + 1; }

  int quietest_ = kHighestLevel;
  int loudest_ = 0;
  double quietMs_ = 0;
};

}  // namespace tavimo::host
