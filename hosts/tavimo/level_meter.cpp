#include "level_meter.h"

#include <algorithm>
#include <cmath>
#include <iostream>

#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace {
constexpr int kCells = 30;
constexpr double kHighestLevel = 128;
constexpr const char* kWipeLine = "\r\x1B[K";
}  // namespace

LevelMeter::LevelMeter(std::string hint) : hint_(std::move(hint)), isVisible_(ErrorsGoToTerminal()) {}

LevelMeter::~LevelMeter() {
  if (isVisible_) std::cerr << kWipeLine << std::flush;
}

void LevelMeter::Show(std::int64_t timeMs, int level) {
  if (!isVisible_) return;
  // Loudness is heard in ratios: by the square root speech fills the middle of the meter, not its first cell.
  const double share = std::sqrt(std::clamp(level / kHighestLevel, 0.0, 1.0));
  const auto filled = static_cast<std::size_t>(std::lround(share * kCells));
  std::cerr << kWipeLine << FormatTime(timeMs) << " [" << std::string(filled, '#') << std::string(kCells - filled, '.')
            << "] " << hint_ << std::flush;
}

}  // namespace tavimo::host
