// The capture loop, with blocks the test feeds itself: what is written, counted, shown and told, and in which order.
#include <cstring>

#include "platform/files.h"
#include "recording/level_meter.h"
#include "recording/recording_state.h"
#include "support/engine_test.h"
#include "support/message_boxes.h"
#include "support/system.h"

namespace tavimo::tests {
namespace {

constexpr int kBlock = 1256;

struct Notice {
  std::uint32_t message;
  std::uintptr_t wparam;
  std::int32_t filePosition;  // as the host reads it in the message
  friend bool operator==(const Notice&, const Notice&) = default;
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
    DispatchEverything();
    tvUseWaveInput("default");
  }

  static void OpenTape(std::int32_t bits) {
    ASSERT_EQ(vcNewTapeFile(22050, bits, 1, "tmpwav\\tmpmic.wav"), 0);
    ASSERT_EQ(vcWaveInOpenForTape(22050, bits, 1), 1);
  }

  // Feeds whole blocks one after the other, each handled before the next.
  static void Feed(int blocks, std::uint8_t value) {
    const Bytes block(kBlock, value);
    for (int i = 0; i < blocks; ++i) {
      ASSERT_EQ(tvFeedWaveInput(block.data(), kBlock), kBlock);
      DispatchEverything();
    }
  }

  static Bytes Tape() { return ReadBytes("tmpwav/tmpmic.wav"); }
  static Bytes ClosedTape() {
    vcWaveInCloseForTape();
    vcCloseWaveFile(3);
    return Tape();
  }

  MessageBoxes boxes;
  Window mainWindow, waveWindow, bar;
};

TEST_F(Capture, MovesTheLevelBarAndWritesOnlyWhileTheTapeIsRecorded) {
  EXPECT_EQ(tvSendMessage(bar, TV_PBM_GETRANGE, 0, 0), 128);
  OpenTape(8);
  Feed(2, 0);
  EXPECT_EQ(tvSendMessage(bar, TV_PBM_GETPOS, 0, 0), 128);
  EXPECT_TRUE(mainNotices.empty());
  EXPECT_EQ(Tape().size(), 46u);

  vcRecordTape();
  Feed(10, 100);
  EXPECT_EQ(tvSendMessage(bar, TV_PBM_GETPOS, 0, 0), 28);
  EXPECT_EQ(Tape().size(), 46u + 10 * kBlock) << "each block is on disk when it has been handled";
  std::vector<Notice> expected;
  for (int i = 0; i < 10; ++i) expected.push_back({0x101, 0x73, 46 + i * kBlock});  // without the block at hand
  EXPECT_EQ(mainNotices, expected);
  EXPECT_EQ(vcStopRecordTape(), 569);
  Feed(3, 128);
  EXPECT_EQ(Tape().size(), 46u + 10 * kBlock);
  EXPECT_EQ(mainNotices.size(), 10u);
  EXPECT_EQ(waveDataSeen, 15) << "every message goes on to the host";

  const Bytes tape = ClosedTape();
  EXPECT_EQ(core::ReadU32(tape.data() + 4), 38u + 10 * kBlock);
  EXPECT_EQ(core::ReadU32(tape.data() + 42), 10u * kBlock);
  EXPECT_EQ(Part(tape, 46, tape.size()), Bytes(10 * kBlock, 100));
  EXPECT_TRUE(boxes.Take().empty());
}

TEST_F(Capture, RecordsOverFromATime) {
  OpenTape(8);
  vcRecordTape();
  Feed(40, 1);
  vcStopRecordTape();
  vcSetFilePosByTime(2000);
  vcRecordTape();
  EXPECT_EQ(core::State().currentWaveFile.dataLength, 44100);
  Feed(1, 2);
  EXPECT_EQ(core::State().currentWaveFile.dataLength, 44100 + kBlock);
  const Bytes tape = ClosedTape();
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
  OpenTape(8);
  vcRecordTape();
  const Bytes part(200, 5);
  EXPECT_EQ(tvFeedWaveInput(part.data(), 200), 200);
  vcPauseRecording();
  DispatchEverything();
  EXPECT_EQ(tvFeedWaveInput(part.data(), 200), 0) << "the device stands still";
  EXPECT_EQ(Tape().size(), 46u + kBlock);
  EXPECT_EQ(Tape()[46 + 199], 5);
  EXPECT_EQ(Tape()[46 + 200], 0x80) << "the rest of the block is silent";
  vcRestartRecording();
  Feed(5, 7);
  EXPECT_EQ(Tape().size(), 46u + 6 * kBlock);
}

TEST_F(Capture, LeavesNoMessageBehindWhenItIsClosed) {
  OpenTape(8);
  DispatchEverything();
  const Bytes blocks(3 * kBlock, 5);
  ASSERT_EQ(tvFeedWaveInput(blocks.data(), 3 * kBlock), 3 * kBlock);
  vcWaveInCloseForTape();
  DispatchEverything();
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
    OpenTape(8);
    vcRecordTape();
    Bytes expected;
    for (std::uint8_t value = 1; value <= 9; value += 3) {
      Bytes blocks;
      for (std::uint8_t i = 0; i < 3; ++i) blocks.insert(blocks.end(), kBlock, static_cast<std::uint8_t>(value + i));
      // Three return before the first is handled; a device that is opened anew takes the rest with it.
      ASSERT_EQ(tvFeedWaveInput(blocks.data(), 3 * kBlock), 3 * kBlock);
      DispatchEverything();
      const bool isLost = proc == ReopeningProc && value == 1;
      expected.insert(expected.end(), blocks.begin(), isLost ? blocks.begin() + kBlock : blocks.end());
    }
    const Bytes tape = ClosedTape();
    EXPECT_EQ(Part(tape, 46, tape.size()), expected);
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
  {
    // Not by std::filesystem, whose lengths end at 2 GiB in 32 bits.
    platform::FileStream longFile = platform::FileStream::Open("a.wav", platform::OpenMode::ReadWrite);
    longFile.Seek(0x800000FF, platform::SeekFrom::Start);
    ASSERT_TRUE(longFile.Write("", 1));
  }
  ASSERT_GE(vcAppendTapeFile("a.wav"), 0);
  vcGotoFileEnd();
  EXPECT_GT(core::State().currentWaveFile.filePosition, 0);
}

TEST_F(Capture, LosesAndDoublesNothingInALongRecording) {
  OpenTape(16);
  vcRecordTape();
  // Pieces that are no blocks, of sound that no block repeats: two hours of it. Each block is several calls of the system's,
  // so a stride counts twice; of 20 it leaves 18 seconds.
  const std::size_t byteCount = 2 * 3600 * 44100 / static_cast<std::size_t>(Stride() * Stride());
  constexpr std::size_t kPieceBytes = 4000;
  constexpr std::size_t kPeriod = 100'003;
  const Bytes sound = Joined(Numbered(kPeriod), Part(Numbered(kPeriod), 0, kPieceBytes));
  std::size_t fed = 0;
  while (fed < byteCount) {
    const int taken = tvFeedWaveInput(sound.data() + fed % kPeriod, kPieceBytes);
    ASSERT_GE(taken, 0);
    fed += static_cast<std::size_t>(taken);
    tvDispatchMessages(0);
  }
  DispatchEverything();
  const auto& ring = recording::State().captureRing;
  EXPECT_EQ(ring.returnedCount, fed / kBlock);
  EXPECT_EQ(ring.queuedCount, fed / kBlock + 4);
  vcStopRecordTape();
  const Bytes tape = ClosedTape();
  ASSERT_EQ(tape.size(), 46 + fed / kBlock * kBlock);
  for (std::size_t at = 0; at + kPieceBytes <= tape.size() - 46; at += kPieceBytes) {
    ASSERT_EQ(std::memcmp(tape.data() + 46 + at, sound.data() + at % kPeriod, kPieceBytes), 0) << at;
  }
}

TEST(LevelMeter, GivesTheMeanDistanceFromSilence) {
  for (const auto& [value, level] : {std::pair{128, 0}, {0, 128}, {255, 127}}) {
    EXPECT_EQ(recording::AverageLevel8(Bytes(1256, static_cast<std::uint8_t>(value))), level);
  }
  EXPECT_EQ(recording::AverageLevel8(Bytes{0, 255, 0, 255}), 127);
  for (const auto& [value, level] : {std::pair{1000, 3}, {-32768, 128}, {32767, 127}, {-255, 0}}) {
    EXPECT_EQ(recording::AverageLevel16(Samples16(std::vector(628, static_cast<std::int16_t>(value)))), level);
  }
  EXPECT_EQ(recording::AverageLevel8({}), 0);
  EXPECT_EQ(recording::AverageLevel16({}), 0);
}

}  // namespace
}  // namespace tavimo::tests
