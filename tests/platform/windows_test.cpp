// Windows, messages, controls, drops and message boxes of the host kit, as a host and the engine see them. Titles across
// processes are titles_test.cpp.
#include "platform/windows.h"

#include <chrono>
#include <climits>
#include <thread>

#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

constexpr std::uint32_t kNote = 0x400;
constexpr std::uint32_t kSendNoteWithin = 0x401;
constexpr std::uint32_t kPostNoteWithin = 0x402;
constexpr std::uint32_t kDestroyWithin = 0x403;

std::intptr_t VC_CALL RecordingProc(VcWindow window, std::uint32_t message, std::uintptr_t wparam,
                                    std::intptr_t lparam) {
  received.push_back({window, message, wparam, lparam});
  if (message == kSendNoteWithin) return tvSendMessage(window, kNote, wparam + 1, 0);
  if (message == kPostNoteWithin) return tvPostMessage(window, kPostNoteWithin, wparam + 1, 0);
  if (message == kDestroyWithin) tvDestroyWindow(window);
  return -4711;
}

class WindowsTest : public ::testing::Test {
 protected:
  WindowsTest() { received.clear(); }
  ~WindowsTest() override { DispatchEverything(); }
};

TEST_F(WindowsTest, RefuseEveryHandleThatIsNoWindow) {
  VcWindow destroyed = tvCreateWindow(TV_WINDOW, nullptr, RecordingProc);
  tvDestroyWindow(destroyed);
  const Window inTheSameSlot(TV_WINDOW, nullptr, RecordingProc);
  VcDc dc = tvCreateDc(1, 1);
  const auto value = reinterpret_cast<std::uintptr_t>(inTheSameSlot.handle);
  for (const std::uintptr_t wild : {std::uintptr_t{0}, reinterpret_cast<std::uintptr_t>(destroyed), value + 1,
                                    value + 0x100000, std::uintptr_t{1}, std::uintptr_t{0xDEADBEEF}, ~std::uintptr_t{0},
                                    reinterpret_cast<std::uintptr_t>(dc), reinterpret_cast<std::uintptr_t>(&dc)}) {
    SCOPED_TRACE(wild);
    auto* const window = reinterpret_cast<VcWindow>(wild);
    const char* const path = "C:\\a.wav";
    EXPECT_TRUE(!platform::WindowExists(window) && platform::GetWindowProc(window) == nullptr);
    platform::SetWindowProc(window, &RecordingProc);
    platform::ChangeClassStyle(window, ~0u, 0);
    EXPECT_EQ(tvClassStyle(window), 0u);
    EXPECT_EQ(tvSendMessage(window, kNote, 1, 2), 0);
    EXPECT_EQ(tvPostMessage(window, kNote, 1, 2), wild == 0 ? 1 : 0);
    EXPECT_EQ(tvDefaultProc(window, TV_LB_GETCOUNT, 0, 0), 0);
    EXPECT_EQ(tvDropFiles(window, &path, 1), -1);
    tvDestroyWindow(window);
  }
  EXPECT_TRUE(platform::WindowExists(inTheSameSlot)) << "the old handle must not reach the new window";
  EXPECT_EQ(tvClassStyle(inTheSameSlot), 0u);
  tvDestroyDc(dc);
  DispatchEverything();
  EXPECT_TRUE(received.empty());
  for (const int kind : {-1, 3, 1000}) EXPECT_EQ(tvCreateWindow(kind, "x", nullptr), nullptr);
}

TEST_F(WindowsTest, ReceiveSentMessagesAtOnceAndPostedOnesInOneOrder) {
  const Window first(TV_WINDOW, nullptr, RecordingProc);
  const Window second(TV_WINDOW, nullptr, RecordingProc);
  EXPECT_EQ(tvPostMessage(first, kNote, 1, -1), 1);
  EXPECT_EQ(tvPostMessage(nullptr, kNote, 2, 0), 1) << "a message for no window waits like others";
  EXPECT_EQ(tvPostMessage(second, kSendNoteWithin, 3, 0), 1);
  EXPECT_EQ(tvPostMessage(first, kNote, ~std::uintptr_t{0}, INTPTR_MIN), 1);
  EXPECT_EQ(tvSendMessage(second, kNote, 0, 0), -4711);
  EXPECT_EQ(tvDispatchMessages(0), 4);
  EXPECT_EQ(received, (std::vector<Message>{{second, kNote, 0, 0},
                                            {first, kNote, 1, -1},
                                            {second, kSendNoteWithin, 3, 0},
                                            {second, kNote, 4, 0},
                                            {first, kNote, ~std::uintptr_t{0}, INTPTR_MIN}}));
  EXPECT_EQ(tvDispatchMessages(0), 0);
}

TEST_F(WindowsTest, LeaveWhatIsPostedDuringDispatchForTheNext) {
  const Window window(TV_WINDOW, nullptr, RecordingProc);
  tvPostMessage(window, kPostNoteWithin, 0, 0);
  for (std::size_t round = 1; round <= 3; ++round) {
    EXPECT_EQ(tvDispatchMessages(0), 1);
    EXPECT_EQ(received.size(), round);
  }
}

TEST_F(WindowsTest, TakeTheirMessagesWithThem) {
  const Window stays(TV_WINDOW, nullptr, RecordingProc);
  VcWindow goes = tvCreateWindow(TV_WINDOW, nullptr, RecordingProc);
  for (std::uintptr_t i = 0; i < 6; ++i) tvPostMessage(i % 2 == 0 ? stays.handle : goes, kNote, i, 0);
  tvPostMessage(nullptr, kNote, 6, 0);
  tvDestroyWindow(goes);
  tvDestroyWindow(nullptr);
  EXPECT_EQ(tvDispatchMessages(0), 4) << "three and the one for no window";
  EXPECT_EQ(received, (std::vector<Message>{{stays, kNote, 0, 0}, {stays, kNote, 2, 0}, {stays, kNote, 4, 0}}));

  VcWindow destroysItself = tvCreateWindow(TV_WINDOW, nullptr, RecordingProc);
  tvPostMessage(destroysItself, kDestroyWithin, 0, 0);
  tvPostMessage(destroysItself, kNote, 0, 0);
  EXPECT_EQ(tvDispatchMessages(0), 1);
  EXPECT_FALSE(platform::WindowExists(destroysItself));
}

TEST_F(WindowsTest, WaitForAFirstMessage) {
  const Window window(TV_WINDOW, nullptr, RecordingProc);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(tvDispatchMessages(30), 0);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(30));
  for (const int timeoutMs : {-1, 60'000}) {
    std::thread device([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      tvPostMessage(window, kNote, 5, 0);
    });
    EXPECT_EQ(tvDispatchMessages(timeoutMs), 1);
    device.join();
  }
}

TEST_F(WindowsTest, KeepTheOrderOfEachThreadThatPosts) {
  constexpr std::uintptr_t kThreads = 4;
  constexpr std::intptr_t kEach = 1'000;
  const Window window(TV_WINDOW, nullptr, RecordingProc);
  VcWindow shortLived = tvCreateWindow(TV_WINDOW, nullptr, RecordingProc);
  std::vector<std::thread> threads;
  for (std::uintptr_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      for (std::intptr_t i = 0; i < kEach; ++i) {
        tvPostMessage(window, kNote, thread, i);
        tvPostMessage(shortLived, kNote, kThreads, i);
      }
    });
  }
  tvDispatchMessages(-1);
  tvDestroyWindow(shortLived);                         // while others post to it
  for (int i = 0; i < 100; ++i) const Window another;  // NOLINT: the table changes while others ask it
  for (std::thread& thread : threads) thread.join();
  DispatchEverything();
  std::vector<std::intptr_t> next(kThreads, 0);
  for (const Message& message : received) {
    if (message.wparam == kThreads) continue;
    EXPECT_EQ(message.lparam, next[message.wparam]++);
  }
  for (std::size_t thread = 0; thread < kThreads; ++thread) EXPECT_EQ(next[thread], kEach);
}

TEST_F(WindowsTest, AreNotAskedForKeysThatDoNotExist) {
  for (const int key : {0, 255, -1, 256, INT_MAX, INT_MIN}) {
    tvSetKeyDown(key, -1);
    EXPECT_EQ(platform::IsKeyDown(key), key == 0 || key == 255);
    tvSetKeyDown(key, 0);
  }
}

std::intptr_t Lparam(const void* address) { return reinterpret_cast<std::intptr_t>(address); }

TEST_F(WindowsTest, OfTheListKindHaveNoLinesBeyondTheirLast) {
  const Window list(TV_LIST_BOX);
  EXPECT_EQ(tvSendMessage(list, TV_LB_ADDSTRING, 0, Lparam("\xB8\xDF A")), 0);
  EXPECT_EQ(tvSendMessage(list, TV_LB_ADDSTRING, 0, 0), 1) << "no text is an empty one";
  EXPECT_EQ(tvSendMessage(list, TV_LB_GETTEXT, 0, 0), 4) << "the length, without a buffer";
  for (const std::uint32_t message : {TV_LB_GETTEXT, TV_LB_GETTEXTLEN}) {
    EXPECT_EQ(tvSendMessage(list, message, 2, 0), -1);
    EXPECT_EQ(tvSendMessage(list, message, ~std::uintptr_t{0}, 0), -1);
  }
  EXPECT_EQ(tvSendMessage(list, TV_LB_RESETCONTENT, 0, 0), 0);
  EXPECT_TRUE(LinesOf(list).empty());
}

TEST_F(WindowsTest, OfTheBarKindKeepAPositionInARange) {
  const Window bar(TV_PROGRESS_BAR);
  EXPECT_EQ(tvSendMessage(bar, TV_PBM_SETRANGE, 0, 0x800000), 0x640000) << "the range before, up to 100";
  for (const auto& [wanted, position] : {std::pair{77, 77}, {500, 128}, {-5, 0}}) {
    tvSendMessage(bar, TV_PBM_SETPOS, static_cast<std::uintptr_t>(wanted), 0);
    EXPECT_EQ(tvSendMessage(bar, TV_PBM_GETPOS, 0, 0), position);
  }
  tvSendMessage(bar, TV_PBM_SETRANGE, 0, static_cast<std::int32_t>(0xFFFF001E));
  EXPECT_EQ(tvSendMessage(bar, TV_PBM_GETPOS, 0, 0), 30) << "brought into the new range";
  EXPECT_EQ(tvSendMessage(bar, TV_PBM_GETRANGE, 0, 0), 0xFFFF);
  EXPECT_EQ(tvSendMessage(bar, TV_PBM_GETRANGE, 1, 0), 30);
}

std::uintptr_t drop = 0;
std::string droppedPath;
int droppedRoom = 0;

std::intptr_t VC_CALL DropProc(VcWindow, std::uint32_t, std::uintptr_t wparam, std::intptr_t) {
  drop = wparam;
  char buffer[298];
  if (droppedRoom > 0) platform::TakeFirstDroppedPath(wparam, buffer, droppedRoom);
  if (droppedRoom > 0) droppedPath = buffer;
  return 0;
}

TEST_F(WindowsTest, HandOverTheFirstDroppedPathOnce) {
  const Window window(TV_WINDOW, nullptr, DropProc);
  const char* const paths[] = {"D:\\\xD6\xD0\xB8\xDF.wav", "E:\\b", nullptr, ""};
  const struct {
    int room;
    const char* path;
  } kCases[] = {{298, paths[0]}, {8, "D:\\\xD6\xD0\xB8\xDF"}, {7, "D:\\\xD6\xD0"}, {1, ""}, {0, ""}};
  for (const auto& testCase : kCases) {
    droppedRoom = testCase.room;
    EXPECT_EQ(tvDropFiles(window, paths, 2), 0);
    EXPECT_EQ(droppedPath, testCase.path);
    for (const std::uintptr_t over : {drop, std::uintptr_t{0}, std::uintptr_t{0x300001}, ~std::uintptr_t{0}}) {
      char buffer[4] = "old";
      platform::TakeFirstDroppedPath(over, buffer, 0);
      EXPECT_STREQ(buffer, "old") << "no room, not even for the zero";
      platform::TakeFirstDroppedPath(over, buffer, sizeof buffer);
      EXPECT_STREQ(buffer, "");
    }
  }
  EXPECT_EQ(tvDropFiles(window, nullptr, 1), -1);
  EXPECT_EQ(tvDropFiles(window, paths, 0), -1);
  EXPECT_EQ(tvDropFiles(window, paths, 3), -1);
  EXPECT_EQ(tvDropFiles(window, paths + 3, 1), -1);
}

}  // namespace
}  // namespace tavimo::tests
