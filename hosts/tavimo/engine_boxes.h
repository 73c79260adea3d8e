// What the engine says in message boxes. In a terminal nobody would see a box, and the program would wait for its end.
#pragma once

#include <string>

namespace tavimo::host {

// From here on each message is a line on standard error. For the start of the program.
void ShowBoxesAsLines();

// While it lives, messages are collected instead.
class CollectedBoxes {
 public:
  CollectedBoxes();
  CollectedBoxes(const CollectedBoxes&) = delete;
  CollectedBoxes& operator=(const CollectedBoxes&) = delete;
  ~CollectedBoxes();

  // One after the other, in UTF-8; empty where there were none.
  [[nodiscard]] const std::string& Text() const { return text_; }

 private:
  static void Note(const char* text, const char* caption, void* user);

  std::string text_;
};

}  // namespace tavimo::host
