// Making digests, on the worker and on the calling thread, and what each leaves on disk.
#include <chrono>
#include <cstdlib>
#include <random>
#include <thread>

#include "platform/files.h"
#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

class DigestMaker : public EngineTest {
 protected:
  static Bytes DigestOf(const Bytes& wave) {
    WriteBytes("a.wav", wave);
    EXPECT_EQ(vcSimpleMakeDigestFile(nullptr, "a.wav", "temp\\a.tmp", nullptr), 1);
    return ReadBytes("temp/a.tmp");
  }

  // A wave that no worker gets through before it is cancelled: 2 GB that take no room on the disk.
  static void MakeEndlessWave(const char* path) {
    constexpr std::uintmax_t kSoundBytes = 2'000'000'000;
    Bytes header = WaveFile({1, 1, 11025, 8}, {});
    header.resize(40);
    AppendLittleEndian(header, kSoundBytes, 4);
    WriteBytes(path, header);
    // Not by std::filesystem, which fails at such a length in 32 bits.
    platform::FileStream file = platform::FileStream::Open(path, platform::OpenMode::ReadWrite);
    file.Seek(static_cast<std::int64_t>(header.size() + kSoundBytes) - 1, platform::SeekFrom::Start);
    ASSERT_TRUE(file.Write("", 1));
  }

  // Waits for the worker; the last percentage read.
  static std::int32_t Wait() {
    for (int i = 0; i < 30'000 && vcGetMakeDigestPercentage() != 1000; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return vcGetMakeDigestPercentage();
  }
};

TEST_F(DigestMaker, TakesTheLastSampleOfEveryBlock) {
  // 16 bits mono at 50 Hz: blocks of two samples.
  const Bytes mono =
      WaveFile({1, 1, 50, 16}, Samples16({9999, -1, 9999, 255, 0, -256, 0, -257, 0, -32768, 0, 32767, 12800}));
  EXPECT_EQ(DigestOf(mono), (Bytes{1, 0, 1, 2, 128, 127, 50})) << "the short last block counts";
  // 16 bits stereo at 25 Hz: blocks of one frame, whose second channel decides.
  EXPECT_EQ(DigestOf(WaveFile({1, 2, 25, 16}, Samples16({25600, 256, 0, -512}))), (Bytes{1, 2}));
  EXPECT_EQ(DigestOf(WaveFile({1, 1, 50, 8}, {9, 0, 9, 128, 9, 255, 7})), (Bytes{128, 0, 127, 121}));
  EXPECT_EQ(DigestOf(WaveFile({1, 2, 25, 8}, {0, 100, 0, 128})), (Bytes{28, 0}));
  EXPECT_EQ(DigestOf(WaveFile({1, 1, 50, 16}, {})), Bytes{});
  EXPECT_EQ(DigestOf(WaveFile({1, 1, 24, 16}, Bytes(100))), Bytes{}) << "no block of 40 ms";
  // Any size but 16 bits counts as 8.
  EXPECT_EQ(DigestOf(WaveFile({1, 1, 50, 24}, {9, 0, 9, 128})), (Bytes{128, 0}));
}

// The rule, block by block, against the maker's pieces.
Bytes PlainDigest(const Bytes& sound, std::size_t blockBytes, bool sixteenBits) {
  Bytes levels;
  for (std::size_t at = 0; at < sound.size(); at += blockBytes) {
    const std::size_t count = std::min(blockBytes, sound.size() - at);
    int level = 0;
    if (!sixteenBits) level = std::abs(sound[at + count - 1] - 128);
    if (sixteenBits && count >= 2) {
      const std::size_t last = at + (count & ~std::size_t{1}) - 2;
      level = std::abs(static_cast<std::int16_t>(sound[last] | sound[last + 1] << 8) >> 8);
    }
    levels.push_back(static_cast<std::uint8_t>(level));
  }
  return levels;
}

TEST_F(DigestMaker, AgreesWithThePlainRuleAcrossPieces) {
  std::mt19937 random(20261122);
  for (const std::size_t length : {262143u, 262144u, 262145u, 262147u, 524288u, 524289u, 700001u}) {
    Bytes sound(length);
    for (auto& byte : sound) byte = static_cast<std::uint8_t>(random());
    EXPECT_EQ(DigestOf(WaveFile({1, 1, 22050, 16}, sound)), PlainDigest(sound, 1764, true)) << length;
    EXPECT_EQ(DigestOf(WaveFile({1, 2, 8000, 8}, sound)), PlainDigest(sound, 640, false)) << length;
    EXPECT_EQ(DigestOf(WaveFile({1, 1, 175, 8}, sound)), PlainDigest(sound, 7, false)) << length;
  }
}

TEST_F(DigestMaker, RefusesWithoutATrace) {
  WriteBytes("good.wav", WaveFile({}, Bytes(5000)));
  WriteBytes("three.wav", WaveFile({1, 3, 11025, 16}, Bytes(5000)));
  WriteText("text.wav", "not a wave file at all");
  WriteText("temp/old.tmp", "old");
  const std::string tooLong = "temp\\" + std::string(200, 'x');
  const std::pair<const char*, const char*> cases[] = {{"none.wav", "temp\\old.tmp"}, {"three.wav", "temp\\old.tmp"},
                                                       {"text.wav", "temp\\old.tmp"}, {"temp", "temp\\old.tmp"},
                                                       {nullptr, "temp\\old.tmp"},    {"", "temp\\old.tmp"},
                                                       {"good.wav", "none\\a.tmp"},   {"good.wav", "temp"},
                                                       {"good.wav", nullptr},         {"good.wav", ""},
                                                       {"good.wav", tooLong.c_str()}, {"good.wav", "good.wav"},
                                                       {"good.wav", ".\\GOOD.wav"}};
  const Bytes original = ReadBytes("good.wav");
  for (const auto& [wave, digest] : cases) {
    EXPECT_EQ(vcSimpleMakeDigestFile(nullptr, wave, digest, nullptr), -1) << wave << " " << digest;
    const bool started = vcMakeDigestFile("good.wav", wave, digest) == 1;
    if (started) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(vcGetMakeDigestPercentage(), 0);
  }
  EXPECT_EQ(ReadText("temp/old.tmp"), "old");
  EXPECT_EQ(ReadBytes("good.wav"), original);
  EXPECT_EQ(NamesIn("temp"), (std::vector<std::string>{"old.tmp"}));
}

TEST_F(DigestMaker, DeletesATemporaryWaveButNeverTheRecording) {
  WriteBytes("a.wav", WaveFile({}, Bytes(5000)));
  SetWriteTime("a.wav", WriteTimeOf("a.wav") - 123456789012345);
  for (const char* spelling : {"A.wav", ".\\a.wav", "temp\\..\\a.wav", "./a.wav"}) {
    ASSERT_EQ(vcMakeDigestFile("a.wav", spelling, "temp\\a.tmp"), 1);
    EXPECT_EQ(Wait(), 1000);
    EXPECT_TRUE(Exists("a.wav")) << spelling;
    EXPECT_EQ(WriteTimeOf("temp/a.tmp"), WriteTimeOf("a.wav"));
  }
  ASSERT_EQ(vcSimpleMakeDigestFile("a.wav", "a.wav", "temp\\b.tmp", nullptr), 1);
  EXPECT_EQ(WriteTimeOf("temp/b.tmp"), WriteTimeOf("a.wav"));
  EXPECT_EQ(ReadBytes("temp/a.tmp"), ReadBytes("temp/b.tmp"));
  fs::copy_file("a.wav", "tmpwav/copy.wav");
  ASSERT_EQ(vcMakeDigestFile("a.wav", "tmpwav\\copy.wav", "temp\\a.tmp"), 1);
  EXPECT_EQ(Wait(), 1000);
  EXPECT_FALSE(Exists("tmpwav/copy.wav"));
  EXPECT_TRUE(Exists("temp/a.tmp"));
}

TEST_F(DigestMaker, CanBeCancelledAndStartedAgainAtOnce) {
  WriteText("temp/a.tmp", "an earlier digest");
  for (int round = 0; round < 5; ++round) {
    MakeEndlessWave("tmpwav/copy.wav");
    ASSERT_EQ(vcMakeDigestFile("long.wav", "tmpwav\\copy.wav", "temp\\a.tmp"), 1);
    EXPECT_EQ(vcMakeDigestFile("long.wav", "long.wav", "temp\\b.tmp"), 0) << "one job at a time";
    vcCancelMakeDigest();
    EXPECT_EQ(Wait(), 1000);
    EXPECT_FALSE(Exists("temp/a.tmp"));
    EXPECT_FALSE(Exists("tmpwav/copy.wav")) << "the temporary wave goes all the same";
  }
  WriteBytes("long.wav", WaveFile({1, 1, 11025, 8}, Bytes(20'000'000, 128)));
  vcCancelMakeDigest();  // nothing runs: the next job is not touched by it
  ASSERT_EQ(vcMakeDigestFile("long.wav", "long.wav", "temp\\a.tmp"), 1);
  for (std::int32_t last = 0; last != 1000;) {
    const std::int32_t percent = vcGetMakeDigestPercentage();
    ASSERT_TRUE(percent >= last && (percent <= 100 || percent == 1000)) << percent;
    last = percent;
  }
  EXPECT_EQ(ReadBytes("temp/a.tmp").size(), (20'000'000u + 440) / 441);
  EXPECT_FALSE(Exists("temp/b.tmp"));
}

std::vector<std::uintptr_t> barPositions;

std::intptr_t VC_CALL BarProc(VcWindow, std::uint32_t message, std::uintptr_t wparam, std::intptr_t) {
  if (message == TV_PBM_SETPOS) barPositions.push_back(wparam);
  return 0;
}

TEST_F(DigestMaker, SendsTheBarItsPositionEvery1024Blocks) {
  barPositions.clear();
  const Window bar(TV_PROGRESS_BAR, nullptr, BarProc);
  // 8-bit mono at 25 Hz: blocks of one byte. 5,000 of them: 20.48, 40.96, 61.44 and 81.92 per cent.
  WriteBytes("a.wav", WaveFile({1, 1, 25, 8}, Bytes(5000)));
  ASSERT_EQ(vcSimpleMakeDigestFile(nullptr, "a.wav", "temp\\a.tmp", bar), 1);
  EXPECT_EQ(barPositions, (std::vector<std::uintptr_t>{20, 40, 61, 81}));
  barPositions.clear();
  WriteBytes("a.wav", WaveFile({1, 1, 25, 8}, Bytes(1023)));
  ASSERT_EQ(vcSimpleMakeDigestFile(nullptr, "a.wav", "temp\\a.tmp", bar), 1);
  EXPECT_TRUE(barPositions.empty());
}

}  // namespace
}  // namespace tavimo::tests
