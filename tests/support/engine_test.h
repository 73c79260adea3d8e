// The ground of every test of exports: the engine as at load, in a scratch folder.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/gbk_literal.h"
#include "support/engine_state.h"
#include "support/scratch_folder.h"
#include "support/wave_bytes.h"
#include "tavimo.h"
#include "tavimo_host.h"

namespace tavimo::tests {

using namespace platform::literals;

class EngineTest : public ::testing::Test {
 protected:
  EngineTest() { ResetEveryRoom(); }
  ~EngineTest() override { ResetEveryRoom(); }

  static void OpenDigest(const Bytes& levels) {
    WriteBytes("temp/a.tmp", levels);
    ASSERT_EQ(vcOpenDigestFile("temp\\a.tmp"), static_cast<std::int32_t>(levels.size()));
  }

  ScratchFolder scratch;
};

// A window that ends with its test.
struct Window {
  explicit Window(int kind = TV_WINDOW, const char* title = nullptr, TvWindowProc proc = nullptr)
      : handle(tvCreateWindow(kind, title, proc)) {}
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() { tvDestroyWindow(handle); }
  operator VcWindow() const { return handle; }
  VcWindow handle;
};

// A message as a window's procedure gets it, and those that the procedures of a test noted.
struct Message {
  VcWindow window;
  std::uint32_t number;
  std::uintptr_t wparam;
  std::intptr_t lparam;
  friend bool operator==(const Message&, const Message&) = default;
};
inline std::vector<Message> received;

inline void DispatchEverything() {
  while (tvDispatchMessages(0) > 0) {
  }
}

// The lines of a list box, in GBK.
inline std::vector<std::string> LinesOf(VcWindow list) {
  std::vector<std::string> lines;
  for (std::intptr_t i = 0; i < tvSendMessage(list, TV_LB_GETCOUNT, 0, 0); ++i) {
    char line[64];
    tvSendMessage(list, TV_LB_GETTEXT, static_cast<std::uintptr_t>(i), reinterpret_cast<std::intptr_t>(line));
    lines.emplace_back(line);
  }
  return lines;
}

}  // namespace tavimo::tests
