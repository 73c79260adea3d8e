// The output device's position and its stop modes.
#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

int waveDataSeen = 0;

std::intptr_t VC_CALL CountingProc(VcWindow, std::uint32_t message, std::uintptr_t, std::intptr_t) {
  if (message == 0x3C0) ++waveDataSeen;
  return 0;
}

class OutputDevice : public EngineTest {
 protected:
  OutputDevice() {
    tvUseWaveOutput("host");
    waveDataSeen = 0;
  }
  ~OutputDevice() override {
    vcWaveOutClose(1);
    tvUseWaveOutput(nullptr);
  }
  static bool IsOpen() { return core::State().outputDevice != 0; }
};

TEST_F(OutputDevice, GivesTheTapesPositionMovedOnByWhatItPlayed) {
  ASSERT_EQ(vcNewTapeFile(22050, 8, 1, "tmpwav\\tmpmic.wav"), 0);
  vcSetFilePosByTime(5000);
  EXPECT_EQ(vcGetWfOutTimePos(), 5000) << "without a device";
  ASSERT_EQ(vcWaveOutOpenPlayFile(), 0);
  EXPECT_EQ(vcGetWfOutTimePos(), 5000);
  tvAdvanceWaveOutput(1255);
  EXPECT_EQ(vcGetWfOutTimePos(), (110250 + 1255) * 1000LL / 22050);
  tvAdvanceWaveOutput(1);
  EXPECT_EQ(vcGetWfOutTimePos(), 5000) << "the bytes of whole blocks are the tape's to count";
  vcSetFilePosByOffset(0);
  EXPECT_EQ(vcGetWfOutTimePos(), 0) << "before the sound";

  ASSERT_EQ(vcNewTapeFile(11025, 8, 1, "tmpwav\\tmpmic.wav"), 0);
  vcSetFilePosByTime(5000);
  EXPECT_EQ(vcGetWfOutTimePos(), 4999) << "the offset was made even";
}

TEST_F(OutputDevice, IsClosedBySomeStopModesOnly) {
  ASSERT_EQ(vcNewTapeFile(22050, 8, 1, "tmpwav\\tmpmic.wav"), 0);
  for (std::int32_t mode = -1; mode <= 15; ++mode) {
    ASSERT_EQ(vcWaveOutOpenPlayFile(), 0);
    vcWaveOutClose(mode);
    const bool closes = mode >= 1 && mode <= 13 && mode != 4 && mode != 8 && mode != 9 && mode != 10;
    EXPECT_EQ(IsOpen(), !closes) << mode;
  }
  vcWaveOutClose(2147483647);
  EXPECT_EQ(vcReturnFileStopPos(), 0);
  vcPlaySample();
}

TEST_F(OutputDevice, IsRefusedWithoutADeviceOrAFormat) {
  EXPECT_EQ(vcWaveOutOpenPlayFile(), -1) << "no format is known";
  ASSERT_EQ(vcNewTapeFile(22050, 8, 1, "tmpwav\\tmpmic.wav"), 0);
  tvUseWaveOutput("none");
  EXPECT_EQ(vcWaveOutOpenPlayFile(), -1);
  EXPECT_FALSE(IsOpen());
}

TEST_F(OutputDevice, DropsCaptureMessagesThatWaitUnlessCaptureRuns) {
  const Window first(TV_WINDOW, nullptr, CountingProc);
  const Window second(TV_WINDOW, nullptr, CountingProc);
  for (const VcWindow window : {first.handle, second.handle}) tvPostMessage(window, 0x3C0, 0, 0);
  vcWaveOutClose(4);
  tvDispatchMessages(0);
  EXPECT_EQ(waveDataSeen, 2);
  for (const VcWindow window : {first.handle, second.handle}) tvPostMessage(window, 0x3C0, 0, 0);
  tvPostMessage(first, 0x400, 0, 0);
  vcWaveOutClose(1);
  EXPECT_EQ(tvDispatchMessages(0), 1) << "the other message stays";
  EXPECT_EQ(waveDataSeen, 2);

  tvUseWaveInput("host");
  vcSetWaveInAndOutWndProc(0, first);
  ASSERT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
  const Bytes block(1256);
  ASSERT_EQ(tvFeedWaveInput(block.data(), 1256), 1256);
  vcWaveOutClose(1);
  DispatchEverything();
  EXPECT_EQ(waveDataSeen, 3) << "a dropped block would never be queued again";
  EXPECT_EQ(recording::State().captureRing.queuedCount, 5);
  vcWaveInCloseForTape();
  tvUseWaveInput(nullptr);
}

}  // namespace
}  // namespace tavimo::tests
