// What is this desktop's own: how many messages its queue holds, and boxes where no host shows them.
#include "platform/windows.h"

#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

constexpr std::uint32_t kNote = 0x400;
std::vector<std::uintptr_t> received;

std::intptr_t VC_CALL NoteProc(VcWindow, std::uint32_t, std::uintptr_t wparam, std::intptr_t) {
  received.push_back(wparam);
  return 0;
}

TEST(Desktop, KeepsTenThousandMessagesAndRefusesMore) {
  const Window window(TV_WINDOW, nullptr, NoteProc);
  for (const std::size_t dispatchedBefore : {0u, 1u}) {  // the second time over the end of the ring
    std::size_t accepted = 0;
    while (accepted < 20'000 && tvPostMessage(window, kNote, accepted, 0) == 1) ++accepted;
    EXPECT_EQ(accepted, 10'000u - dispatchedBefore);
    EXPECT_EQ(tvPostMessage(nullptr, kNote, 0, 0), 0);
    received.clear();
    EXPECT_EQ(tvDispatchMessages(0), 10'000);
    EXPECT_EQ(received[5'000], 5'000u - dispatchedBefore);
    tvPostMessage(window, kNote, 99, 0);
  }
}

TEST(Desktop, ShowsMessagesOnStandardErrorWithoutAHandler) {
  ::testing::internal::CaptureStderr();
  platform::ShowMessageBox("\xB8\xDF\x1B[2J\n\x80 \xFE\xFE\xD6", "Tavimo");
  platform::ShowMessageBox("x", "");
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "Tavimo: 高 [2J € ??\nx\n");
}

}  // namespace
}  // namespace tavimo::tests
