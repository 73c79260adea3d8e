// Devices of a real sound server, a private one without hardware whose microphone hears what its sink plays.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <numeric>
#include <thread>

#include "support/captured_sound.h"
#include "support/sound_server.h"

namespace tavimo::tests {
namespace {

using platform::WaveFormat;
using platform::WaveInput;
using platform::WaveOutput;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr WaveFormat kEightMono{1, 1, 22050, 8};
constexpr WaveFormat kSixteenMono{1, 1, 22050, 16};

std::uint32_t BytesPerFrame(const WaveFormat& format) { return format.channels * format.bitsPerSample / 8u; }

Bytes Tone(const WaveFormat& format, double frequency, double seconds) {
  Bytes sound;
  const auto frames = static_cast<int>(seconds * format.sampleRate);
  for (int i = 0; i < frames; ++i) {
    const double level = 0.5 * std::sin(2 * std::numbers::pi * frequency * i / format.sampleRate);
    const auto sample = static_cast<std::int16_t>(std::lround(level * 32767));
    for (int channel = 0; channel < format.channels; ++channel) {
      if (format.bitsPerSample == 8) {
        sound.push_back(static_cast<std::uint8_t>((sample >> 8) + 128));
      } else {
        AppendLittleEndian(sound, static_cast<std::uint16_t>(sample), 2);
      }
    }
  }
  return sound;
}

// The first channel as numbers around 0.
std::vector<double> FirstChannel(const Bytes& sound, const WaveFormat& format) {
  std::vector<double> samples;
  for (std::size_t i = 0; i + BytesPerFrame(format) <= sound.size(); i += BytesPerFrame(format)) {
    const int wide = static_cast<std::int16_t>(sound[i] | (format.bitsPerSample == 16 ? sound[i + 1] << 8 : 0));
    samples.push_back(format.bitsPerSample == 8 ? (sound[i] - 127.5) / 128 : wide / 32768.0);
  }
  return samples;
}

// The root of the mean square: of a tone that is half of full scale 0.354.
double LevelOf(const std::vector<double>& samples) {
  const double sum = std::inner_product(samples.begin(), samples.end(), samples.begin(), 0.0);
  return samples.empty() ? 0 : std::sqrt(sum / static_cast<double>(samples.size()));
}

// From the times between the places where the sound rises through zero; 0 when there are not even a hundred of them. The
// longest and the shortest do not count: what finds no block on a busy machine is lost, as from any microphone.
double FrequencyOf(const std::vector<double>& samples, std::uint32_t rate) {
  std::vector<double> periods;
  double lastRise = 0;
  for (std::size_t i = 1; i < samples.size(); ++i) {
    const double before = samples[i - 1];
    const double after = samples[i];
    if (before >= 0 || after < 0) continue;
    const double rise = static_cast<double>(i) - after / (after - before);
    periods.push_back(rise - std::exchange(lastRise, rise));
  }
  if (periods.size() < 100) return 0;
  std::sort(periods.begin(), periods.end());
  const auto quarter = std::ssize(periods) / 4;
  const double sum = std::accumulate(periods.begin() + quarter, periods.end() - quarter, 0.0);
  return static_cast<double>(std::ssize(periods) - 2 * quarter) * rate / sum;
}

class PulseTest : public EngineTest {
 protected:
  static void SetUpTestSuite() {
    if (SoundServer::IsInstalled()) server = std::make_unique<SoundServer>();
  }
  static void TearDownTestSuite() { server.reset(); }

  void SetUp() override {
    if (!server) GTEST_SKIP() << SoundServer::kMissing;
    ASSERT_TRUE(server->IsRunning() || server->Start()) << server->Log();
    recordedMessages.clear();
    tvUseWaveInput("default");
    tvUseWaveOutput("default");
  }
  ~PulseTest() override {
    tvStopPlaying();
    tvUseWaveInput(nullptr);
    tvUseWaveOutput(nullptr);
  }

  // Captures with blocks going round until byteCount bytes of sound have come. Blocks with gaps, as a busy machine makes
  // them, do not count.
  static Bytes CaptureSound(InputRig& rig, const WaveFormat& format, std::size_t byteCount) {
    Bytes sound;
    std::size_t next = 0;
    const auto end = steady_clock::now() + milliseconds(5000);
    while (sound.size() < byteCount && steady_clock::now() < end) {
      for (OwnBlock* block : TakeBlocks(100)) {
        EXPECT_EQ(block, &rig.blocks[next++ % rig.blocks.size()]) << "in the order queued";
        EXPECT_EQ(block->bytesRecorded, block->bufferLength);
        if (LevelOf(FirstChannel(block->bytes, format)) > 0.3) sound = Joined(sound, block->bytes);
        EXPECT_EQ(rig.Queue(*block), platform::kAudioOk);
      }
    }
    EXPECT_GE(sound.size(), byteCount) << "no more sound came";
    return sound;
  }

  static inline std::unique_ptr<SoundServer> server;
};

TEST_F(PulseTest, HearsInEveryFormatWhatIsPlayed) {
  const WaveFormat formats[] = {{1, 1, 11025, 8}, {1, 1, 22050, 16}, {1, 2, 22050, 8}, {1, 2, 44100, 16}};
  for (const WaveFormat& format : formats) {
    SCOPED_TRACE(testing::Message() << format.sampleRate << '/' << format.bitsPerSample << '/' << format.channels);
    const Bytes tone = Tone(format, 1000, 5);
    InputRig rig(format, 16,
                 format.sampleRate / 20 * BytesPerFrame(format));  // 800 ms, else a busy machine loses sound
    ASSERT_EQ(rig.result, platform::kAudioOk);
    EXPECT_EQ(platform::StartWaveInput(rig.device), platform::kAudioOk);
    rig.QueueAll();
    ASSERT_EQ(tvPlayWave(tone.data(), static_cast<int>(tone.size()), static_cast<int>(format.sampleRate),
                         format.bitsPerSample, format.channels),
              0);
    const Bytes sound = CaptureSound(rig, format, 8 * rig.blocks[0].bytes.size());
    EXPECT_NEAR(FrequencyOf(FirstChannel(sound, format), format.sampleRate), 1000, 10);
    EXPECT_NEAR(LevelOf(FirstChannel(sound, format)), 0.354, 0.05);
    tvStopPlaying();
  }
}

TEST_F(PulseTest, PutsOnATapeWhatIsPlayed) {
  const Window waveWindow;
  vcSetWaveInAndOutWndProc(0, waveWindow);
  ASSERT_EQ(vcNewTapeFile(22050, 16, 1, "tmpwav\\tmpmic.wav"), 0);
  ASSERT_EQ(vcWaveInOpenForTape(22050, 16, 1), 1);
  const Bytes tone = Tone(kSixteenMono, 700, 2.5);
  ASSERT_EQ(tvPlayWave(tone.data(), static_cast<int>(tone.size()), 22050, 16, 1), 0);
  vcRecordTape();
  const auto end = steady_clock::now() + milliseconds(6000);
  while (tvPlayedMs() >= 0 && steady_clock::now() < end) tvDispatchMessages(20);
  const std::int32_t durationMs = vcStopRecordTape();
  vcWaveInCloseForTape();
  vcCloseWaveFile(3);
  EXPECT_EQ(vcIsWaveFile("tmpwav\\tmpmic.wav"), 1);

  const Bytes tape = ReadBytes("tmpwav/tmpmic.wav");
  EXPECT_EQ(durationMs, static_cast<std::int32_t>((tape.size() - 46) * 1000 / 44100));
  const std::vector<double> samples = FirstChannel(Part(tape, 46, tape.size()), kSixteenMono);
  const auto isLoud = [](double sample) { return std::abs(sample) > 0.3; };
  const auto begin = std::find_if(samples.begin(), samples.end(), isLoud);
  ASSERT_GT(samples.end() - begin, 22050) << "a second of the tone is on the tape";
  EXPECT_NEAR(FrequencyOf({begin, begin + 22050}, 22050), 700, 7);
  EXPECT_NEAR(LevelOf({begin, begin + 22050}), 0.354, 0.05);
}

TEST_F(PulseTest, StopsAndGoesOnWithTheSameBlocks) {
  InputRig rig(kEightMono, 16);
  ASSERT_EQ(rig.result, platform::kAudioOk);
  rig.QueueAll();
  TakeMessages();
  platform::StartWaveInput(rig.device);
  ASSERT_FALSE(TakeBlocks(2000).empty());
  platform::StopWaveInput(rig.device);
  TakeBlocks();
  EXPECT_TRUE(TakeBlocks(150).empty()) << "nothing comes while stopped";
  platform::StartWaveInput(rig.device);
  EXPECT_FALSE(TakeBlocks(2000).empty()) << "the empty ones stayed";
  platform::ResetWaveInput(rig.device);
  for (const OwnBlock& block : rig.blocks) EXPECT_EQ(block.flags, 3u);
}

TEST_F(PulseTest, ListsDevicesAndOpensThemByNameOrDescription) {
  char names[500] = "";
  const int size = tvListDevices(1, names, sizeof names);
  EXPECT_EQ(std::string(names), "default\ntest_sink.monitor\ntest_microphone\n");
  EXPECT_EQ(size, static_cast<int>(std::string(names).size()) + 1);
  EXPECT_EQ(tvListDevices(1, names, size), size);
  EXPECT_EQ(tvListDevices(1, names, size - 1), -1);
  EXPECT_STREQ(names, "");
  EXPECT_EQ(tvListDevices(0, names, sizeof names), 19);
  EXPECT_STREQ(names, "default\ntest_sink\n");
  for (const char* name : {SoundServer::kMicrophone, SoundServer::kMicrophoneDescription, "nobody's"}) {
    tvUseWaveInput(name);
    const InputRig rig(kEightMono);
    EXPECT_EQ(rig.result, std::string(name) == "nobody's" ? platform::kAudioNoDevice : platform::kAudioOk) << name;
  }
}

TEST_F(PulseTest, CountsWhatHasBeenHeard) {
  WaveOutput device = 0;
  std::uint32_t played = 99;
  ASSERT_EQ(platform::OpenWaveOutput(device, kSixteenMono), platform::kAudioOk);
  platform::PauseWaveOutput(device);
  EXPECT_TRUE(platform::GetPlayedBytes(device, played));
  EXPECT_EQ(played, 0u) << "nothing is played on the engine's own device";
  platform::RestartWaveOutput(device);
  EXPECT_EQ(platform::CloseWaveOutput(device), platform::kAudioOk);

  for (const double seconds : {0.03, 0.4}) {  // shorter and longer than the server's buffer
    const Bytes tone = Tone(kSixteenMono, 500, seconds);
    ASSERT_EQ(tvPlayWave(tone.data(), static_cast<int>(tone.size()), 22050, 16, 1), 0);
    const auto start = steady_clock::now();
    int lastMs = 0;
    auto elapsedMs = [&] { return std::chrono::duration<double, std::milli>(steady_clock::now() - start).count(); };
    for (int ms = 0; (ms = tvPlayedMs()) >= 0 && elapsedMs() < 2000;) {
      EXPECT_GE(ms, lastMs);
      EXPECT_LE(ms, elapsedMs() + 20);
      lastMs = ms;
      std::this_thread::sleep_for(milliseconds(5));
    }
    EXPECT_GE(elapsedMs(), seconds * 1000 - 20) << "not before it was heard";
    EXPECT_LT(elapsedMs(), seconds * 1000 + 1500);
  }
}

TEST_F(PulseTest, SurvivesTheDeathOfTheServer) {
  InputRig rig(kEightMono);
  ASSERT_EQ(rig.result, platform::kAudioOk);
  const Bytes tone = Tone(kEightMono, 1000, 3);
  ASSERT_EQ(tvPlayWave(tone.data(), static_cast<int>(tone.size()), 22050, 8, 1), 0);
  rig.QueueAll();
  platform::StartWaveInput(rig.device);
  ASSERT_FALSE(TakeBlocks(2000).empty());
  server->Kill();
  const auto death = steady_clock::now();
  std::this_thread::sleep_for(milliseconds(50));
  TakeBlocks();
  EXPECT_EQ(tvPlayedMs(), -1);
  platform::StopWaveInput(rig.device);
  platform::ResetWaveInput(rig.device);
  for (const OwnBlock& block : rig.blocks) EXPECT_EQ(block.flags & platform::kBlockQueued, 0u);
  EXPECT_NE(platform::StartWaveInput(rig.device), platform::kAudioOk);
  EXPECT_EQ(platform::CloseWaveInput(rig.device), platform::kAudioOk);
  WaveInput refused = 77;
  EXPECT_EQ(platform::OpenWaveInput(refused, kEightMono, nullptr), platform::kAudioNoDevice);
  EXPECT_EQ(refused, 77u);
  char names[100] = "x";
  EXPECT_EQ(tvListDevices(1, names, sizeof names), 1);
  EXPECT_EQ(tvPlayWave(tone.data(), 1000, 22050, 8, 1), -1);
  EXPECT_LT(steady_clock::now() - death, milliseconds(1000)) << "a server that is gone is noticed at once";

  ASSERT_TRUE(server->Start()) << server->Log();
  InputRig next(kEightMono);
  next.QueueAll();
  EXPECT_EQ(platform::StartWaveInput(next.device), platform::kAudioOk);
  TakeMessages();
  EXPECT_FALSE(TakeBlocks(2000).empty());
}

TEST_F(PulseTest, WaitsForAFrozenServerOnlyOnce) {
  InputRig rig(kEightMono);
  rig.QueueAll();
  platform::StartWaveInput(rig.device);
  server->Freeze();
  const auto start = steady_clock::now();
  platform::StopWaveInput(rig.device);
  platform::ResetWaveInput(rig.device);
  EXPECT_EQ(platform::CloseWaveInput(rig.device), platform::kAudioOk);
  EXPECT_LT(steady_clock::now() - start, milliseconds(4000));
  WaveInput refused = 77;
  EXPECT_EQ(platform::OpenWaveInput(refused, kEightMono, nullptr), platform::kAudioNoDevice);
  EXPECT_LT(steady_clock::now() - start, milliseconds(8000));
  server->Thaw();
}

}  // namespace
}  // namespace tavimo::tests
