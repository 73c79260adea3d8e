#include "progress_bar.h"

#include <algorithm>
#include <iostream>

#include "system.h"

namespace tavimo::host {

namespace {
using Clock = std::chrono::steady_clock;
constexpr auto kShowEvery = std::chrono::milliseconds(100);
constexpr int kBarCells = 40;
constexpr const char* kWipeLine = "\r\x1B[K";
}  // namespace

ProgressBar::ProgressBar(std::string title)
    : title_(std::move(title)), isVisible_(ErrorsGoToTerminal()), nextShow_(Clock::now() + kShowEvery) {}

ProgressBar::~ProgressBar() {
  if (wasShown_) std::cerr << kWipeLine << std::flush;
}

void ProgressBar::Show(int percent) {
  if (!isVisible_ || Clock::now() < nextShow_) return;
  wasShown_ = true;
  nextShow_ = Clock::now() + kShowEvery;
  percent = std::clamp(percent, 0, 100);
  const int filled = percent * kBarCells / 100;
  std::cerr << kWipeLine << '[' << std::string(static_cast<std::size_t>(filled), '#')
            << std::string(static_cast<std::size_t>(kBarCells - filled), '.') << "] " << percent << " % " << title_
            << std::flush;
}

}  // namespace tavimo::host
