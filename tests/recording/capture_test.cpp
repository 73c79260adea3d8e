// The capture loop, with blocks the test feeds itself: what is written, counted, shown and told, and in which order.
#include <filesystem>
#include <numeric>
#include <vector>

#include "recording/level_meter.h"
#include "recording/recording_state.h"
#include "support/engine_test.h"
#include "support/message_boxes.h"

namespace tavimo::tests {
namespace {

constexpr int kBlock = 1256;

struct Notice {
  std::uint32_t message;
  std::uintptr_t wparam;
  std::int32_t filePosition;  // as the host reads it in the message
};
std::vector<Notice> mainNotices;
int waveDataSeen = 0;

std::intptr_t VC_CALL MainProc(VcWindow, std::uint32_t message, std::uintptr_t wparam, std::intptr_t) {
  mainNotices.push_back({message, wparam, core::State().currentWaveFile.filePosition});
  return 0;
}

std::intptr_t VC_CALL WaveProc(VcWindow, std::uint32_t message, std::uintptr_t, std::intptr_t) {
  if (message == 0x3C0) ++waveDataSeen;
  return 0;
}

class Capture : public EngineTest {
 protected:
  Capture() : mainWindow(TV_WINDOW, nullptr, MainProc), waveWindow(TV_WINDOW, nullptr, WaveProc), bar(TV_PROGRESS_BAR) {
    mainNotices.clear();
    waveDataSeen = 0;
    tvUseWaveInput("host");
    vcSetMainWnd(mainWindow);
    vcSetWaveInAndOutWndProc(0, waveWindow);
    vcSetRecordingVolumeBarHandle(bar);
  }
  ~Capture() override {
    vcWaveInCloseForTape();
    Dispatch();
    tvUseWaveInput("default");
  }

  static void Dispatch() {
    while (tvDispatchMessages(0) > 0) {
    }
  }

  // Feeds whole blocks one after the other, each handled before the next.
  static void Feed(int blocks, std::uint8_t value) {
    const Bytes block(kBlock, value);
    for (int i = 0; i < blocks; ++i) {
      ASSERT_EQ(tvFeedWaveInput(block.data(), kBlock), kBlock);
      Dispatch();
    }
  }

  static Bytes Tape() { return ReadBytes("tmpwav/tmpmic.wav"); }

  MessageBoxes boxes;
  Window mainWindow, waveWindow, bar;
};

TEST_F(Capture, MovesTheLevelBarAndWritesOnlyWhileTheTapeIsRecorded) {
  EXPECT_EQ(tvSendMessage(bar, TV_PBM_GETRANGE, 0, 0), 128);
  ASSERT_EQ(vcNewTapeFile(22050, 8, 1, "tmpwav\\tmpmic.wav"), 0);
  ASSERT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
  Feed(2, 0);
  EXPECT_EQ(tvSendMessage(bar, TV_PBM_GETPOS, 0, 0), 128);
  EXPECT_TRUE(mainNotices.empty());
  EXPECT_EQ(Tape().size(), 46u);

  vcRecordTape();
  Feed(10, 100);
  EXPECT_EQ(tvSendMessage(bar, TV_PBM_GETPOS, 0, 0), 28);
  EXPECT_EQ(Tape().size(), 46u + 10 * kBlock) << "each block is on disk when it has been handled";
  ASSERT_EQ(mainNotices.size(), 10u);
  for (int i = 0; i < 10; ++i) {
    const Notice& notice = mainNotices[static_cast<std::size_t>(i)];
    EXPECT_EQ(notice.message, 0x101u);
    EXPECT_EQ(notice.wparam, 0x73u);
    EXPECT_EQ(notice.filePosition, 46 + i * kBlock) << "without the block at hand";
  }
  EXPECT_EQ(vcStopRecordTape(), 569);
  Feed(3, 128);
  EXPECT_EQ(Tape().size(), 46u + 10 * kBlock);
  EXPECT_EQ(mainNotices.size(), 10u);
  EXPECT_EQ(waveDataSeen, 15) << "every message goes on to the host";

  vcWaveInCloseForTape();
  vcCloseWaveFile(3);
  const Bytes tape = Tape();
  EXPECT_EQ(core::ReadU32(tape.data() + 4), 38u + 10 * kBlock);
  EXPECT_EQ(core::ReadU32(tape.data() + 42), 10u * kBlock);
  EXPECT_EQ(Bytes(tape.begin() + 46, tape.end()), Bytes(10 * kBlock, 100));
  EXPECT_TRUE(boxes.Take().empty());
}

TEST_F(Capture, RecordsOverFromATime) {
  ASSERT_EQ(vcNewTapeFile(22050, 8, 1, "tmpwav\\tmpmic.wav"), 0);
  ASSERT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
  vcRecordTape();
  Feed(40, 1);
  vcStopRecordTape();
  vcSetFilePosByTime(2000);
  vcRecordTape();
  EXPECT_EQ(core::State().currentWaveFile.dataLength, 44100);
  Feed(1, 2);
  EXPECT_EQ(core::State().currentWaveFile.dataLength, 44100 + kBlock);
  vcWaveInCloseForTape();
  vcCloseWaveFile(3);
  const Bytes tape = Tape();
  EXPECT_EQ(core::ReadU32(tape.data() + 42), 44100u + kBlock) << "the sound ends where the position stands";
  EXPECT_EQ(tape.size(), 46u + 40 * kBlock) << "the file keeps its length";
  EXPECT_EQ(tape[46 + 44099], 1);
  EXPECT_EQ(tape[46 + 44100], 2);
  EXPECT_EQ(tape[46 + 44100 + kBlock], 1);
}

TEST_F(Capture, AppendsToAnExistingFile) {
  WriteBytes("tmpwav/tmpmic.wav", WaveFile({1, 1, 22050, 8}, Bytes(1000, 9)));
  ASSERT_EQ(vcAppendTapeFile("tmpwav\\tmpmic.wav"), 45);
  vcGotoFileEnd();
  ASSERT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
  vcRecordTape();
  Feed(2, 3);
  EXPECT_EQ(vcStopRecordTape(), (1000 + 2 * kBlock) * 1000 / 22050);
  vcWaveInCloseForTape();
  vcCloseWaveFile(2);
  const Bytes tape = Tape();
  EXPECT_EQ(tape.size(), 44u + 1000 + 2 * kBlock);
  EXPECT_EQ(core::ReadU32(tape.data() + 40), 1000u + 2 * kBlock);
  EXPECT_EQ(core::ReadU32(tape.data() + 4), 36u + 1000) << "the RIFF chunk's size stays";
}

TEST_F(Capture, CountsAPausedBlockAsAWholeOne) {
  ASSERT_EQ(vcNewTapeFile(22050, 8, 1, "tmpwav\\tmpmic.wav"), 0);
  ASSERT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
  vcRecordTape();
  const Bytes part(200, 5);
  EXPECT_EQ(tvFeedWaveInput(part.data(), 200), 200);
  vcPauseRecording();
  Dispatch();
  EXPECT_EQ(tvFeedWaveInput(part.data(), 200), 0) << "the device stands still";
  EXPECT_EQ(Tape().size(), 46u + kBlock);
  EXPECT_EQ(Tape()[46 + 199], 5);
  EXPECT_EQ(Tape()[46 + 200], 0x80) << "the rest of the block is silent";
  vcRestartRecording();
  Feed(5, 7);
  EXPECT_EQ(Tape().size(), 46u + 6 * kBlock);
}

TEST_F(Capture, LeavesNoMessageBehindWhenItIsClosed) {
  ASSERT_EQ(vcNewTapeFile(22050, 8, 1, "tmpwav\\tmpmic.wav"), 0);
  ASSERT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
  Dispatch();
  const Bytes blocks(3 * kBlock, 5);
  ASSERT_EQ(tvFeedWaveInput(blocks.data(), 3 * kBlock), 3 * kBlock);
  vcWaveInCloseForTape();
  Dispatch();
  EXPECT_EQ(waveDataSeen, 0);
  tvSendMessage(waveWindow, 0x3C0, 0, 0);
  EXPECT_EQ(waveDataSeen, 1) << "one that arrives later is the host's";
  EXPECT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1) << "and the device opens again";
  Feed(5, 1);
  EXPECT_EQ(waveDataSeen, 6);
}

TEST_F(Capture, IsRefusedQuietly) {
  tvUseWaveInput("none");
  EXPECT_EQ(vcWaveInOpenForTape(22050, 8, 1), 0);
  EXPECT_EQ(core::State().tapeFormat.sampleRate, 22050) << "the format is set all the same";
  tvUseWaveInput("host");
  for (const auto& [bits, channels] : {std::pair{16, 65537}, {16, -65535}, {-65528, 1}, {65552, 1}, {16, 0}, {7, 1}}) {
    EXPECT_EQ(vcWaveInOpenForTape(22050, bits, channels), 0) << bits << " bits, " << channels << " channels";
  }
  tvUseWaveInput("host");
  ASSERT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
  EXPECT_EQ(vcWaveInOpenForTape(44100, 16, 2), 0) << "it is open";
  EXPECT_EQ(core::State().tapeFormat.sampleRate, 22050) << "the first goes on as it was";
  vcRecordTape();
  Feed(2, 1);
  EXPECT_TRUE(mainNotices.empty()) << "there is no tape to record";
  vcWaveInCloseForTape();
  vcWaveInCloseForTape();
  vcPauseRecording();
  vcRestartRecording();
  EXPECT_EQ(vcGetTimeToDisplay(), 0);
  EXPECT_TRUE(boxes.Take().empty());
}

std::intptr_t VC_CALL ClosingProc(VcWindow, std::uint32_t message, std::uintptr_t, std::intptr_t) {
  if (message == 0x101) vcWaveInCloseForTape();
  return 0;
}

TEST_F(Capture, MayBeClosedFromTheHostsOwnMessage) {
  const Window closing(TV_WINDOW, nullptr, ClosingProc);
  vcSetMainWnd(closing);
  ASSERT_EQ(vcNewTapeFile(22050, 8, 1, "tmpwav\\tmpmic.wav"), 0);
  ASSERT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
  vcRecordTape();
  Feed(1, 1);
  EXPECT_TRUE(boxes.Take().empty());
  EXPECT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
}

std::intptr_t VC_CALL ReopeningProc(VcWindow, std::uint32_t message, std::uintptr_t, std::intptr_t) {
  if (message == 0x101 && mainNotices.empty()) {
    mainNotices.push_back({});
    vcWaveInCloseForTape();
    EXPECT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
  }
  return 0;
}

std::intptr_t VC_CALL DispatchingProc(VcWindow, std::uint32_t message, std::uintptr_t, std::intptr_t) {
  if (message == 0x101) tvDispatchMessages(0);
  return 0;
}

TEST_F(Capture, LosesAndDoublesNothingWhateverTheHostDoesInItsMessage) {
  for (const TvWindowProc proc : {ReopeningProc, DispatchingProc}) {
    const Window host(TV_WINDOW, nullptr, proc);
    vcSetMainWnd(host);
    ASSERT_EQ(vcNewTapeFile(22050, 8, 1, "tmpwav\\tmpmic.wav"), 0);
    ASSERT_EQ(vcWaveInOpenForTape(22050, 8, 1), 1);
    vcRecordTape();
    Bytes expected;
    for (std::uint8_t value = 1; value <= 9; value += 3) {
      Bytes blocks;
      for (std::uint8_t i = 0; i < 3; ++i) blocks.insert(blocks.end(), kBlock, static_cast<std::uint8_t>(value + i));
      // Three return before the first is handled; a device that is opened anew takes the rest with it.
      ASSERT_EQ(tvFeedWaveInput(blocks.data(), 3 * kBlock), 3 * kBlock);
      Dispatch();
      const bool isLost = proc == ReopeningProc && value == 1;
      expected.insert(expected.end(), blocks.begin(), isLost ? blocks.begin() + kBlock : blocks.end());
    }
    vcWaveInCloseForTape();
    vcCloseWaveFile(3);
    const Bytes tape = Tape();
    EXPECT_EQ(Bytes(tape.begin() + 46, tape.end()), expected);
    EXPECT_TRUE(boxes.Take().empty());
  }
}

TEST_F(Capture, NeverWritesBeforeTheSound) {
  const Bytes file = WaveFile({1, 1, 22050, 16}, Bytes(5000, 7));
  for (const std::int32_t timeMs : {-1, -100}) {
    WriteBytes("a.wav", file);
    ASSERT_GE(vcAppendTapeFile("a.wav"), 0);
    vcSetFilePosByTime(timeMs);
    ASSERT_EQ(vcWaveInOpenForTape(22050, 16, 1), 1);
    vcRecordTape();
    Feed(1, 9);
    vcWaveInCloseForTape();
    vcCloseWaveFile(0);
    EXPECT_EQ(ReadBytes("a.wav"), file) << timeMs;
  }
  // The end of more than 2 GiB has no position; the beginning must not take its place.
  WriteBytes("a.wav", file);
  std::filesystem::resize_file("a.wav", 0x80000100);
  ASSERT_GE(vcAppendTapeFile("a.wav"), 0);
  vcGotoFileEnd();
  EXPECT_GT(core::State().currentWaveFile.filePosition, 0);
}

TEST_F(Capture, LosesAndDoublesNothingInTwoHours) {
  ASSERT_EQ(vcNewTapeFile(22050, 16, 1, "tmpwav\\tmpmic.wav"), 0);
  ASSERT_EQ(vcWaveInOpenForTape(22050, 16, 1), 1);
  vcRecordTape();
  constexpr int kBlocks = 2 * 3600 * 44100 / kBlock;
  Bytes block(kBlock);
  for (int i = 0; i < kBlocks; ++i) {
    core::WriteU32(block.data(), static_cast<std::uint32_t>(i));
    core::WriteU32(block.data() + kBlock - 4, static_cast<std::uint32_t>(i));
    ASSERT_EQ(tvFeedWaveInput(block.data(), kBlock), kBlock);
    tvDispatchMessages(0);
  }
  Dispatch();
  const auto& ring = recording::State().captureRing;
  EXPECT_EQ(ring.returnedCount, kBlocks);
  EXPECT_EQ(ring.queuedCount, kBlocks + 4);
  vcStopRecordTape();
  vcWaveInCloseForTape();
  vcCloseWaveFile(3);
  const Bytes tape = Tape();
  ASSERT_EQ(tape.size(), 46u + static_cast<std::size_t>(kBlocks) * kBlock);
  for (std::size_t i = 0; i < kBlocks; ++i) {
    const std::uint8_t* at = tape.data() + 46 + i * kBlock;
    ASSERT_EQ(core::ReadU32(at), i);
    ASSERT_EQ(core::ReadU32(at + kBlock - 4), i);
  }
}

TEST(LevelMeter, GivesTheMeanDistanceFromSilence) {
  const auto constant8 = [](std::uint8_t value) { return recording::AverageLevel8(Bytes(1256, value)); };
  EXPECT_EQ(constant8(128), 0);
  EXPECT_EQ(constant8(0), 128);
  Bytes alternating(1256);
  for (std::size_t i = 1; i < 1256; i += 2) alternating[i] = 255;
  EXPECT_EQ(recording::AverageLevel8(alternating), 127);
  const auto constant16 = [](std::int16_t value) {
    return recording::AverageLevel16(Samples16(std::vector<std::int16_t>(628, value)));
  };
  EXPECT_EQ(constant16(1000), 3);
  EXPECT_EQ(constant16(-32768), 128);
  EXPECT_EQ(constant16(32767), 127);
  EXPECT_EQ(constant16(-255), 0);
  EXPECT_EQ(recording::AverageLevel8({}), 0);
  EXPECT_EQ(recording::AverageLevel16({}), 0);
}

}  // namespace
}  // namespace tavimo::tests
