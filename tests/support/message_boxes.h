// Catches the engine's message boxes for the length of a test.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tavimo_host.h"

namespace tavimo::tests {

struct Box {
  std::string text, caption;  // GBK
  friend bool operator==(const Box&, const Box&) = default;
};

class MessageBoxes {
 public:
  MessageBoxes() {
    tvSetMessageBoxHandler(
        [](const char* text, const char* caption, void* user) {
          static_cast<MessageBoxes*>(user)->boxes_.push_back({text, caption});
        },
        this);
  }
  MessageBoxes(const MessageBoxes&) = delete;
  MessageBoxes& operator=(const MessageBoxes&) = delete;
  ~MessageBoxes() { tvSetMessageBoxHandler(nullptr, nullptr); }

  // The boxes shown since the last call.
  std::vector<Box> Take() { return std::exchange(boxes_, {}); }

 private:
  std::vector<Box> boxes_;
};

}  // namespace tavimo::tests
