// Titles of windows as other processes of the same user see them. A window that has a title holds a shared lock on a file
// named after it; whoever asks for the title tries to lock that file alone. The kernel drops the lock when the process
// ends, however it ends, so that a killed program never counts as running.
//
// The files lie in $XDG_RUNTIME_DIR/tavimo-windows, else in tavimo-windows below the user's cache folder. The folder must
// belong to the user and be closed to everybody else: in a shared one anybody could keep a program from starting.
// Without such a folder titles are seen in their own process only.
#pragma once

#include <string>
#include <string_view>

#include "platform/linux/descriptor.h"

namespace tavimo::platform {

// A GBK title with the letters of Latin, full-width Latin, Greek and Cyrillic in lower case; second bytes of characters
// stay as they are. Equal results mean equal titles.
[[nodiscard]] std::string FoldTitle(std::string_view title);

// At most one title shown to other processes, until the end of this object.
class PublishedTitle {
 public:
  PublishedTitle() = default;
  PublishedTitle(const PublishedTitle&) = delete;
  PublishedTitle& operator=(const PublishedTitle&) = delete;
  ~PublishedTitle();

  // Does nothing when there is no folder for titles. REQUIRES: called once at most.
  void Publish(const std::string& foldedTitle);

 private:
  std::string fileName_;
  Descriptor folder_;
  Descriptor file_;
};

// Whether a window of any process holds the title.
[[nodiscard]] bool IsTitlePublished(const std::string& foldedTitle);

}  // namespace tavimo::platform
