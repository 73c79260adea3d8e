// The level of the microphone as a line on standard error while the learner speaks; nothing at all where standard error
// is not a terminal.
#pragma once

#include <cstdint>
#include <string>

namespace tavimo::host {

class LevelMeter {
 public:
  explicit LevelMeter(std::string hint);  // how to end, shown behind the meter
  LevelMeter(const LevelMeter&) = delete;
  LevelMeter& operator=(const LevelMeter&) = delete;
  ~LevelMeter();  // wipes the line

  void Show(std::int64_t timeMs, int level);

 private:
  std::string hint_;
  bool isVisible_;
};

}  // namespace tavimo::host
