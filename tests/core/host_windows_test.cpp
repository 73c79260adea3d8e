// The windows the engine stands in front of: what it takes, and that everything else reaches the host unchanged.

#include "platform/windows.h"
#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

std::intptr_t VC_CALL HostProc(VcWindow window, std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) {
  received.push_back({window, message, wparam, lparam});
  return 4711;
}

std::intptr_t VC_CALL OtherHostProc(VcWindow, std::uint32_t, std::uintptr_t, std::intptr_t) { return 4712; }

class HostWindowsTest : public EngineTest {
 protected:
  HostWindowsTest() { received.clear(); }
};

TEST_F(HostWindowsTest, PassCaptureMessagesOnWhileNoCaptureRuns) {
  const Window window(TV_WINDOW, nullptr, HostProc);
  vcSetWaveInAndOutWndProc(99, window);
  for (const std::uint32_t message : {0x3C0u, 0x3BEu, 0x101u, 0u}) {
    EXPECT_EQ(tvSendMessage(window, message, 0xFFFFFFF0u, -5), 4711);
    EXPECT_EQ(received.back(), (Message{window, message, 0xFFFFFFF0u, -5}));
  }
  EXPECT_EQ(HidedWndProcIn(window, 0x3C0, 1, 2), 4711);
  vcSetWaveInAndOutWndProc(0, nullptr);
  vcSetDebugWnd(window);
  EXPECT_EQ(tvSendMessage(window, 0x400, 0, 0), 4711) << "a null window changes nothing";
}

TEST_F(HostWindowsTest, RegisteredAgainOrReplacedAnswerWithTheirOwnProcedures) {
  const Window first(TV_WINDOW, nullptr, HostProc);
  const Window second(TV_WINDOW, nullptr, OtherHostProc);
  const auto useForPlaying = [](VcWindow window) { vcSetPlayFormWndProc(window); };
  const auto useForSound = [](VcWindow window) { vcSetWaveInAndOutWndProc(0, window); };
  const std::pair<void (*)(VcWindow), VcWindow> kSteps[] = {
      {useForPlaying, first}, {useForPlaying, first}, {useForSound, first},
      {useForSound, first},   {useForPlaying, first}, {useForPlaying, second},
      {useForSound, second},  {useForSound, first},   {useForSound, second}};
  for (const auto& [use, window] : kSteps) {
    use(window);
    EXPECT_EQ(tvSendMessage(first, 0x400, 0, 0), 4711);
    EXPECT_EQ(tvSendMessage(second, 0x400, 0, 0), 4712);
  }
}

TEST_F(HostWindowsTest, HandOverTheFirstDroppedFile) {
  const Window window(TV_WINDOW, nullptr, HostProc);
  char path[298] = "old";
  EXPECT_EQ(vcGetDragFile(path), 0);
  EXPECT_STREQ(path, "") << "before any drop";
  vcSetPlayFormWndProc(window);

  const char* const drops[] = {"D:\\\xD6\xD0\\a.wav", "D:\\b.wav"};
  ASSERT_EQ(tvDropFiles(window, drops, 2), 0);
  DispatchEverything();
  ASSERT_EQ(received.size(), 1u) << "the drop itself never reaches the host";
  EXPECT_EQ(received[0], (Message{window, 0x101, 0x7A, 0}));
  EXPECT_EQ(vcGetDragFile(path), 10) << "in characters";
  EXPECT_STREQ(path, drops[0]);
  EXPECT_EQ(vcGetDragFile(nullptr), 10);

  EXPECT_EQ(tvSendMessage(window, 0x401, 7, 8), 4711);
}

TEST_F(HostWindowsTest, CutADroppedPathAtWhatTheBufferHolds) {
  const Window window;
  vcSetPlayFormWndProc(window);
  const std::string longPath(400, 'x');
  const char* const drops[] = {longPath.c_str()};
  ASSERT_EQ(tvDropFiles(window, drops, 1), 0);
  char path[299];
  path[298] = '#';
  EXPECT_EQ(vcGetDragFile(path), 297);
  EXPECT_EQ(std::string(path), longPath.substr(0, 297));
  EXPECT_EQ(path[298], '#');
}

TEST_F(HostWindowsTest, LoseAndRegainTheCloseCommand) {
  const Window window;
  const Window another;  // the style is that of the kind
  const std::uint32_t before = tvClassStyle(window);
  vcNoClose(window, 1);
  EXPECT_EQ(tvClassStyle(another), before | 0x200);
  vcNoClose(another, 0);
  EXPECT_EQ(tvClassStyle(window), before);
  vcNoClose(nullptr, 1);
}

TEST_F(HostWindowsTest, TellWhetherCtrlIsDown) {
  for (const int isDown : {1, 0}) {
    tvSetKeyDown(TV_VK_CONTROL, isDown);
    EXPECT_EQ(vcIfCtrlPressed(), isDown);
  }
}

}  // namespace
}  // namespace tavimo::tests
