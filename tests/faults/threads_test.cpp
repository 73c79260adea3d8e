// The engine's threads beside one another for a while: the digest worker, started, polled, cancelled and started again without a
// pause, beside everything the host may do meanwhile, and a device that fills blocks while capture is paused, closed and
// opened again. The thread sanitizer looks on. TAVIMO_THREAD_SECONDS makes it longer than the half second of the suite.
#include <chrono>
#include <cstdlib>
#include <random>
#include <string>
#include <thread>

#include "support/engine_test.h"
#include "support/lesson_files.h"
#include "support/message_boxes.h"

namespace tavimo::tests {
namespace {

using Clock = std::chrono::steady_clock;

class ThreadsTogether : public EngineTest {
 protected:
  ThreadsTogether() { WriteLesson(); }
  ~ThreadsTogether() override {
    vcCancelMakeDigest();
    while (IsWorkerRunning()) std::this_thread::yield();
  }

  static bool IsWorkerRunning() { return (digest::State().digestJob.percentage.load() & digest::kWorkerRuns) != 0; }

  static Clock::time_point End() {
    const char* seconds = std::getenv("TAVIMO_THREAD_SECONDS");
    return Clock::now() + std::chrono::milliseconds(seconds == nullptr ? 500 : 1000 * std::atol(seconds));
  }

  MessageBoxes boxes;
};

TEST_F(ThreadsTogether, AWorkerIsStartedPolledCancelledAndStartedAgain) {
  WriteBytes("long.wav", WaveFile({1, 1, 22050, 16}, Bytes(3'000'000, 0x30)));
  constexpr std::size_t kLevels = 1701;
  std::mt19937 random(1);
  int whole = 0;
  int cancelled = 0;
  for (const auto end = End(); Clock::now() < end;) {
    const bool isStarted = vcMakeDigestFile("long.wav", "long.wav", "temp\\long.tmp") == 1;
    ASSERT_TRUE(isStarted) << "the worker before has ended";
    if (vcMakeDigestFile("long.wav", "long.wav", "temp\\other.tmp") == 1) {
      EXPECT_EQ(ReadBytes("temp/long.tmp").size(), kLevels) << "one at a time, and the one before had ended";
    }
    const bool isCancelled = random() % 2 == 0;
    for (auto polls = random() % 50; polls > 0; --polls) {
      const std::int32_t percentage = vcGetMakeDigestPercentage();
      EXPECT_TRUE((percentage >= 0 && percentage <= 100) || percentage == 1000) << percentage;
      vcOpenDigestFile("temp\\a.tmp");
      vcMakeSentence();
    }
    EXPECT_EQ(vcSimpleMakeDigestFile("long.wav", "long.wav", "temp\\host.tmp", nullptr), 1);
    if (isCancelled) vcCancelMakeDigest();
    while (vcGetMakeDigestPercentage() != 1000 || IsWorkerRunning()) std::this_thread::yield();
    const std::size_t levels = ReadBytes("temp/long.tmp").size();
    EXPECT_TRUE(levels == kLevels || (isCancelled && levels == 0)) << levels;
    EXPECT_EQ(ReadBytes("temp/host.tmp").size(), kLevels);
    ++(levels == kLevels ? whole : cancelled);
  }
  EXPECT_GT(whole, 0);
  RecordProperty("rounds", std::to_string(whole + cancelled));
}

TEST_F(ThreadsTogether, CaptureBesideABusyDevice) {
  const Window window;
  const Window bar(TV_PROGRESS_BAR);
  ASSERT_EQ(tvUseWaveInput("file:stereo.wav"), 0);
  vcSetWaveInAndOutWndProc(0, window);
  vcSetMainWnd(window);
  vcSetRecordingVolumeBarHandle(bar);
  std::mt19937 random(2);
  for (const auto end = End(); Clock::now() < end;) {
    ASSERT_EQ(vcNewTapeFile(192000, 16, 2, "tmpwav\\tmpmic.wav"), 0);
    ASSERT_EQ(vcWaveInOpenForTape(192000, 16, 2), 1);
    vcRecordTape();
    for (auto steps = random() % 20; steps > 0; --steps) {
      tvDispatchMessages(1);
      if (random() % 5 == 0) vcPauseRecording();
      if (random() % 2 == 0) vcRestartRecording();
    }
    const std::int32_t durationMs = vcStopRecordTape();
    vcWaveInCloseForTape();
    vcCloseWaveFile(3);
    EXPECT_EQ(vcAppendTapeFile("tmpwav\\tmpmic.wav"), durationMs) << "every block is in the tape";
    vcCloseReadOnlyFile();
  }
  tvUseWaveInput(nullptr);
  EXPECT_TRUE(boxes.Take().empty());
}

}  // namespace
}  // namespace tavimo::tests
