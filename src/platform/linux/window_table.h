// The windows of this process: what there is to know of each, found by handles that are checked and never followed. Not
// for messages on their way (message_queue.h) nor for what windows do with them (controls.h).
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

#include "platform/common/handle_table.h"
#include "platform/linux/controls.h"
#include "platform/linux/window_titles.h"
#include "platform/windows.h"

namespace tavimo::platform {

enum class WindowKind { Plain, ListBox, ProgressBar };
inline constexpr int kWindowKindCount = 3;

struct Window {
  // Only a plain window is a top-level one, which other programs find by its title. A null procedure stands for
  // DefaultWindowProc.
  Window(WindowKind ofKind, const char* title, WindowProc hostProcedure);

  WindowKind kind;
  WindowProc procedure;
  std::string foldedTitle;  // empty for none
  PublishedTitle publishedTitle;
  ListBox listBox;
  ProgressBar progressBar;
};

// The user-interface thread alone adds, removes and finds windows, so that what Find gave it stays until it removes the
// window itself, and finding one for each message takes no lock. Contains may be called from any thread.
class WindowTable {
 public:
  // Null when there are too many windows. May throw std::bad_alloc; nothing has changed then.
  VcWindow Add(std::unique_ptr<Window> window);
  [[nodiscard]] Window* Find(VcWindow window) const noexcept {
    return windows_.Find(reinterpret_cast<std::uintptr_t>(window));
  }
  [[nodiscard]] bool Contains(VcWindow window) const noexcept;
  [[nodiscard]] bool HasTitle(const std::string& foldedTitle) const;

  // What remains of the window, to be destroyed by the caller.
  std::unique_ptr<Window> Remove(VcWindow window) noexcept;

 private:
  mutable std::mutex mutex_;  // of the user-interface thread's changes and the other threads' looks
  HandleTable<Window, HandleKind::Window> windows_;
};

}  // namespace tavimo::platform
