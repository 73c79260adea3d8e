// A bar of one line on standard error while long work runs; nothing at all where standard error is not a terminal.
#pragma once

#include <chrono>
#include <string>

namespace tavimo::host {

class ProgressBar {
 public:
  explicit ProgressBar(std::string title);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar();  // wipes the line

  void Show(int percent);

 private:
  std::string title_;
  bool isVisible_;
  bool wasShown_ = false;
  std::chrono::steady_clock::time_point nextShow_;  // short work shows no bar at all
};

}  // namespace tavimo::host
