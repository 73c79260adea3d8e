// Audio devices that need no server: fed by the host, from a file, or refused. What they promise of blocks, messages,
// handles and formats holds for every kind of device.
#include <chrono>
#include <span>

#include "support/captured_sound.h"
#include "support/system.h"

namespace tavimo::tests {
namespace {

using platform::AudioResult;
using platform::WaveFormat;
using platform::WaveInput;
using platform::WaveOutput;

constexpr WaveFormat kSixteenMono{1, 1, 11025, 16};
constexpr WaveFormat kEightMono{1, 1, 22050, 8};

class AudioTest : public EngineTest {
 protected:
  AudioTest() {
    recordedMessages.clear();
    tvUseWaveInput("host");
    tvUseWaveOutput("host");
  }
  ~AudioTest() override {
    tvStopPlaying();
    tvUseWaveInput(nullptr);
    tvUseWaveOutput(nullptr);
  }
};

std::vector<OwnBlock*> Pointers(std::span<OwnBlock> blocks) {
  std::vector<OwnBlock*> pointers;
  for (OwnBlock& block : blocks) pointers.push_back(&block);
  return pointers;
}

TEST_F(AudioTest, TakesPcmOfEightAndSixteenBitsAndRefusesEverythingElse) {
  const std::pair<WaveFormat, bool> cases[] = {
      {{1, 1, 1000, 8}, true},    {{1, 2, 192000, 16}, true},  {{1, 1, 0, 16}, false},
      {{1, 1, 999, 16}, false},   {{1, 1, 192001, 16}, false}, {{1, 1, 0xFFFFFFFF, 8}, false},
      {{1, 1, 11025, 0}, false},  {{1, 1, 11025, 24}, false},  {{1, 1, 11025, 0xFFF8}, false},
      {{1, 0, 11025, 16}, false}, {{1, 3, 11025, 16}, false},  {{2, 1, 11025, 16}, false},
  };
  for (const auto& [format, isTaken] : cases) {
    const AudioResult expected = isTaken ? platform::kAudioOk : platform::kAudioBadFormat;
    WaveInput input = 77;
    WaveOutput output = 78;
    EXPECT_EQ(platform::OpenWaveInput(input, format, nullptr), expected) << format.sampleRate;
    EXPECT_EQ(platform::OpenWaveOutput(output, format), expected) << format.bitsPerSample;
    EXPECT_EQ(input != 77, isTaken);
    EXPECT_EQ(output != 78, isTaken);
    platform::CloseWaveInput(input);
    platform::CloseWaveOutput(output);
  }
}

TEST_F(AudioTest, AnswersHandlesThatAreNotOpenWithoutFollowingThem) {
  InputRig rig(kEightMono);
  WaveInput closedInput = 0;
  WaveOutput closedOutput = 0;
  ASSERT_EQ(platform::OpenWaveInput(closedInput, kEightMono, nullptr), platform::kAudioOk);
  ASSERT_EQ(platform::OpenWaveOutput(closedOutput, kEightMono), platform::kAudioOk);
  EXPECT_EQ(platform::CloseWaveInput(closedInput), platform::kAudioOk);
  EXPECT_EQ(platform::CloseWaveOutput(closedOutput), platform::kAudioOk);
  for (const std::uintptr_t handle : {std::uintptr_t{0}, std::uintptr_t{1}, ~std::uintptr_t{0}, closedInput,
                                      closedOutput, closedInput + (1u << 20)}) {
    OwnBlock& block = rig.blocks[0];
    std::uint32_t played = 99;
    const AudioResult results[] = {
        platform::StartWaveInput(handle),      platform::StopWaveInput(handle),
        platform::ResetWaveInput(handle),      platform::CloseWaveInput(handle),
        platform::PrepareBlock(handle, block), platform::UnprepareBlock(handle, block),
        platform::QueueBlock(handle, block),   platform::PauseWaveOutput(handle),
        platform::RestartWaveOutput(handle),   platform::ResetWaveOutput(handle),
        platform::CloseWaveOutput(handle),
    };
    for (const AudioResult result : results) EXPECT_EQ(result, platform::kAudioInvalidHandle) << handle;
    EXPECT_FALSE(platform::GetPlayedBytes(handle, played));
    EXPECT_EQ(played, 99u);
  }
  const Window destroyed;
  tvDestroyWindow(destroyed);
  EXPECT_NE(platform::OpenWaveInput(closedInput, kEightMono, destroyed), platform::kAudioOk);
}

TEST_F(AudioTest, FillsBlocksInTheOrderQueuedAndTakesNothingWithoutOne) {
  InputRig rig(kEightMono);
  EXPECT_EQ(TakeMessages(), (std::vector<DeviceMessage>{{kMmWimOpen, rig.device, nullptr}}));
  const Bytes sound = Numbered(3000);

  EXPECT_EQ(platform::StartWaveInput(rig.device), platform::kAudioOk);
  EXPECT_EQ(platform::StartWaveInput(rig.device), platform::kAudioOk);
  EXPECT_EQ(tvFeedWaveInput(sound.data(), 3000), 0) << "started before any block";
  rig.QueueAll();
  EXPECT_EQ(tvFeedWaveInput(sound.data(), 1), 1);
  EXPECT_EQ(tvFeedWaveInput(sound.data() + 1, 2999), 2999);
  const std::vector<DeviceMessage> full = {{kMmWimData, rig.device, &rig.blocks[0]},
                                           {kMmWimData, rig.device, &rig.blocks[1]}};
  EXPECT_EQ(TakeMessages(), full);
  EXPECT_EQ(rig.blocks[0].bytes, Part(sound, 0, 1256));
  EXPECT_EQ(rig.blocks[1].bytes, Part(sound, 1256, 2512));
  EXPECT_EQ(rig.blocks[1].bytesRecorded, 1256u);

  EXPECT_EQ(tvFeedWaveInput(sound.data(), 3000), 2 * 1256 - 488) << "four blocks are out, none is queued again";
  EXPECT_EQ(tvFeedWaveInput(sound.data(), 3000), 0);
  EXPECT_EQ(tvFeedWaveInput(sound.data(), 0), 0);
  EXPECT_EQ(tvFeedWaveInput(nullptr, 1), -1);
  EXPECT_EQ(tvFeedWaveInput(sound.data(), -1), -1);
  EXPECT_EQ(TakeBlocks(), Pointers(std::span(rig.blocks).subspan(2)));

  EXPECT_EQ(platform::CloseWaveInput(rig.device), platform::kAudioOk);
  EXPECT_EQ(TakeMessages(), (std::vector<DeviceMessage>{{kMmWimClose, rig.device, nullptr}}));
  EXPECT_EQ(tvFeedWaveInput(sound.data(), 1), -1) << "no device is open";
}

TEST_F(AudioTest, MarksBlocksAsPreparedQueuedAndDone) {
  InputRig rig(kEightMono, 17);
  OwnBlock& block = rig.blocks[0];
  EXPECT_EQ(platform::QueueBlock(rig.device, block), platform::kAudioUnprepared);
  EXPECT_EQ(platform::UnprepareBlock(rig.device, block), platform::kAudioOk);
  EXPECT_EQ(platform::PrepareBlock(rig.device, block), platform::kAudioOk);
  EXPECT_EQ(block.flags, 2u);
  EXPECT_EQ(platform::PrepareBlock(rig.device, block), platform::kAudioOk);
  EXPECT_EQ(platform::QueueBlock(rig.device, block), platform::kAudioOk);
  EXPECT_EQ(block.flags, 0x12u);
  EXPECT_EQ(platform::UnprepareBlock(rig.device, block), platform::kAudioStillQueued);
  EXPECT_EQ(platform::QueueBlock(rig.device, block), platform::kAudioStillQueued);
  EXPECT_EQ(platform::CloseWaveInput(rig.device), platform::kAudioStillQueued) << "the device keeps its block";
  for (std::size_t i = 1; i < 16; ++i) EXPECT_EQ(rig.Queue(rig.blocks[i]), platform::kAudioOk);
  EXPECT_EQ(rig.Queue(rig.blocks[16]), platform::kAudioNoMemory) << "more than a device holds";

  EXPECT_EQ(platform::ResetWaveInput(rig.device), platform::kAudioOk);
  EXPECT_EQ(block.flags, 3u);
  EXPECT_EQ(TakeBlocks(), Pointers(std::span(rig.blocks).first(16)));
  EXPECT_EQ(platform::UnprepareBlock(rig.device, block), platform::kAudioOk);
  EXPECT_EQ(block.flags & 2u, 0u);

  platform::WaveBlock empty;
  EXPECT_EQ(platform::PrepareBlock(rig.device, empty), platform::kAudioOk);
  EXPECT_NE(platform::QueueBlock(rig.device, empty), platform::kAudioOk) << "a block without bytes";
}

TEST_F(AudioTest, ReturnsTheBlockBeingFilledWithASilentTailOnStopAndAllOnReset) {
  for (const auto& [format, silence] : {std::pair{kEightMono, std::uint8_t{0x80}}, {kSixteenMono, std::uint8_t{0}}}) {
    InputRig rig(format);
    rig.QueueAll();
    platform::StartWaveInput(rig.device);
    const Bytes sound(1256 + 235, 0x11);
    EXPECT_EQ(tvFeedWaveInput(sound.data(), 1256 + 235), 1256 + 235);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(platform::StopWaveInput(rig.device), platform::kAudioOk);
    EXPECT_EQ(TakeBlocks(), Pointers(std::span(rig.blocks).first(2)));
    EXPECT_EQ(rig.blocks[1].bytesRecorded, 235u);
    EXPECT_EQ(rig.blocks[1].bytes, With(Bytes(1256, silence), 0, Bytes(235, 0x11)));
    EXPECT_EQ(tvFeedWaveInput(sound.data(), 10), 0) << "stopped";

    platform::StartWaveInput(rig.device);
    EXPECT_EQ(tvFeedWaveInput(sound.data(), 10), 10) << "the empty blocks stayed";
    EXPECT_EQ(platform::ResetWaveInput(rig.device), platform::kAudioOk);
    EXPECT_EQ(TakeBlocks(), Pointers(std::span(rig.blocks).last(2)));
    EXPECT_EQ(rig.blocks[2].bytesRecorded, 10u);
    EXPECT_EQ(rig.blocks[3].bytesRecorded, 0u);
    EXPECT_EQ(rig.blocks[3].flags, 3u);
  }
}

TEST_F(AudioTest, ChoosesDevicesByTheHostThenByTheEnvironment) {
  WriteBytes("no.wav", Bytes(60, 'x'));
  WriteBytes("deep.wav", WaveFile({1, 1, 11025, 24}, Bytes(30)));
  WriteBytes("good.wav", WaveFile({1, 1, 11025, 16}, Bytes(30)));
  for (const char* device : {"", "file:", "file:missing", "file:no.wav", "file:zud", "file:deep.wav"}) {
    EXPECT_EQ(tvUseWaveInput(device), -1) << device;
    EXPECT_EQ(tvUseWaveOutput(device), -1) << device;
  }
  EXPECT_EQ(tvUseWaveInput("file:good.wav"), 0);
  EXPECT_EQ(tvUseWaveOutput("file:good.wav"), -1) << "files are heard alone";

  const ScopedVariable inputVariable("TAVIMO_WAVE_INPUT", "none");
  const ScopedVariable outputVariable("TAVIMO_WAVE_OUTPUT", "none");
  WaveInput input = 77;
  WaveOutput output = 78;
  for (const char* device : {static_cast<const char*>(nullptr), "none"}) {
    EXPECT_EQ(tvUseWaveInput(device), 0);
    EXPECT_EQ(tvUseWaveOutput(device), 0);
    EXPECT_EQ(platform::OpenWaveInput(input, kEightMono, nullptr), platform::kAudioNoDevice);
    EXPECT_EQ(platform::OpenWaveOutput(output, kEightMono), platform::kAudioNoDevice);
  }
  EXPECT_EQ(input, 77u);
  EXPECT_EQ(output, 78u);
  tvUseWaveInput("host");
  const InputRig rig(kEightMono);
  EXPECT_EQ(rig.result, platform::kAudioOk) << "the host's choice comes first";
}

// Bytes as they come from a file device, in blocks of their own.
Bytes Capture(const WaveFormat& format, std::uint32_t byteCount) {
  InputRig rig(format, 1, byteCount);
  rig.QueueAll();
  EXPECT_EQ(platform::StartWaveInput(rig.device), platform::kAudioOk);
  EXPECT_EQ(TakeBlocks(2000).size(), 1u);
  return rig.blocks[0].bytes;
}

TEST_F(AudioTest, ConvertsAFileToTheFormatOfTheDevice) {
  WriteBytes("eight.wav", WaveFile({1, 1, 8000, 8}, {0x80, 0x90, 0x00, 0xFF}));
  WriteBytes("stereo.wav",
             WaveFile({1, 2, 4000, 16}, Samples16({256, 512, -256, -1024, 32767, 32767, -32768, -32768})));
  const struct {
    const char* device;
    WaveFormat format;
    Bytes expected;
  } cases[] = {
      {"file:eight.wav", {1, 1, 8000, 16}, Samples16({0, 0x1000, -0x8000, 0x7F00, 0, 0})},
      {"file:eight.wav",
       {1, 2, 16000, 8},
       {0x80, 0x80, 0x88, 0x88, 0x90, 0x90, 0x48, 0x48, 0x00, 0x00, 0x7F, 0x7F, 0xFF, 0xFF, 0xBF, 0xBF, 0x80, 0x80}},
      {"file:stereo.wav", {1, 2, 4000, 16}, Samples16({256, 512, -256, -1024, 32767, 32767, -32768, -32768, 0, 0})},
      {"file:stereo.wav", {1, 1, 4000, 16}, Samples16({384, -640, 32767, -32768, 0})},
      {"file:stereo.wav", {1, 1, 2000, 8}, {0x81, 0xFF, 0x80}},
  };
  for (const auto& c : cases) {
    ASSERT_EQ(tvUseWaveInput(c.device), 0);
    EXPECT_EQ(Capture(c.format, static_cast<std::uint32_t>(c.expected.size())), c.expected)
        << c.device << ' ' << c.format.sampleRate << ' ' << c.format.bitsPerSample << ' ' << c.format.channels;
  }
}

TEST_F(AudioTest, PacesAFileAsRealTimeAndWaitsWhileItIsStopped) {
  using std::chrono::milliseconds;
  using std::chrono::steady_clock;
  const Bytes sound = Numbered(8000);
  WriteBytes("voice.wav", WaveFile({1, 1, 8000, 8}, sound));
  ASSERT_EQ(tvUseWaveInput("file:voice.wav"), 0);
  InputRig rig({1, 1, 8000, 8}, 16, 400);  // 50 ms each
  rig.QueueAll();
  Bytes captured;
  const auto take = [&](int timeoutMs) {
    for (const OwnBlock* block : TakeBlocks(timeoutMs))
      captured = Joined(captured, Part(block->bytes, 0, block->bytesRecorded));
  };
  const auto start = steady_clock::now();
  platform::StartWaveInput(rig.device);
  while (captured.size() < 800 && steady_clock::now() - start < milliseconds(2000)) take(100);
  EXPECT_GE(steady_clock::now() - start, milliseconds(captured.size() / 8));
  EXPECT_LT(steady_clock::now() - start, milliseconds(1000)) << "a tenth of a second of sound";
  platform::StopWaveInput(rig.device);
  take(0);
  const std::size_t atStop = captured.size();
  take(60);
  EXPECT_EQ(captured.size(), atStop);
  platform::StartWaveInput(rig.device);
  take(1000);
  EXPECT_GT(captured.size(), atStop);
  ASSERT_LE(captured.size(), sound.size());
  EXPECT_EQ(captured, Part(sound, 0, captured.size()));
}

TEST_F(AudioTest, MovesAnOutputsPositionAsTheHostSays) {
  EXPECT_EQ(tvAdvanceWaveOutput(1), -1) << "no device is open";
  WaveOutput device = 0;
  ASSERT_EQ(platform::OpenWaveOutput(device, kSixteenMono), platform::kAudioOk);
  const auto moved = [&](std::uint32_t byteCount) {
    std::uint32_t played = 99;
    EXPECT_EQ(tvAdvanceWaveOutput(byteCount), 0);
    EXPECT_TRUE(platform::GetPlayedBytes(device, played));
    return played;
  };
  EXPECT_EQ(moved(1256), 1256u);
  platform::PauseWaveOutput(device);
  EXPECT_EQ(moved(500), 1256u) << "paused";
  platform::RestartWaveOutput(device);
  EXPECT_EQ(moved(0xFFFFFFFF), 1255u) << "wraps at 32 bits";
  platform::PauseWaveOutput(device);
  platform::ResetWaveOutput(device);
  EXPECT_EQ(moved(7), 7u) << "runs after a reset";
  EXPECT_EQ(platform::CloseWaveOutput(device), platform::kAudioOk);
}

TEST_F(AudioTest, PlaysASoundAndTellsItsPosition) {
  const Bytes sound(44101);
  EXPECT_EQ(tvPlayedMs(), -1);
  EXPECT_EQ(tvPlayWave(sound.data(), 44101, 22050, 16, 1), 0) << "half a sample is left out";
  EXPECT_EQ(tvPlayedMs(), 0);
  EXPECT_EQ(tvAdvanceWaveOutput(22050), 0);
  EXPECT_EQ(tvPlayedMs(), 500);
  EXPECT_EQ(tvPlayWave(sound.data(), 3, 22050, 16, 2), -1) << "less than a frame";
  EXPECT_EQ(tvPlayWave(sound.data(), 44101, -22050, 16, 1), -1);
  EXPECT_EQ(tvPlayWave(sound.data(), 44101, 22050, 16, 0x10001), -1);
  EXPECT_EQ(tvPlayWave(nullptr, 44101, 22050, 16, 1), -1);
  EXPECT_EQ(tvPlayWave(sound.data(), -1, 22050, 16, 1), -1);
  EXPECT_EQ(tvPlayedMs(), 500) << "what is refused stops nothing";
  EXPECT_EQ(tvPlayWave(sound.data(), 11025, 11025, 8, 1), 0);
  EXPECT_EQ(tvPlayedMs(), 0) << "in place of the first";
  EXPECT_EQ(tvAdvanceWaveOutput(11025), 0);
  EXPECT_EQ(tvPlayedMs(), -1) << "at its end";
  EXPECT_EQ(tvAdvanceWaveOutput(1), -1);
  tvUseWaveOutput("none");
  EXPECT_EQ(tvPlayWave(sound.data(), 11025, 11025, 8, 1), -1);
}

}  // namespace
}  // namespace tavimo::tests
