// The learner's voice: its overview of 600 levels, and the waves drawn from it.
#include "support/engine_test.h"
#include "support/message_boxes.h"
#include "support/picture.h"

namespace tavimo::tests {
namespace {

using Rows = std::pair<int, int>;

class VoiceOverview : public EngineTest {
 protected:
  static void Record(const std::vector<std::int16_t>& samples) {
    WriteBytes("tmpwav/tmpmic.wav", WaveFile({}, Samples16(samples)));
  }
  static std::uint32_t Level(std::size_t k) { return digest::State().voiceVisualTable[k]; }

  MessageBoxes boxes;
};

TEST_F(VoiceOverview, ReducesSamplesToSixHundredLevels) {
  std::vector<std::int16_t> samples(6000);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    samples[i] = static_cast<std::int16_t>((i % 2 == 0 ? 1 : -1) * static_cast<int>(i / 10 % 128) * 256);
  }
  Record(samples);
  ASSERT_EQ(vcSetVisualWaveDataMan(0), 0);
  for (std::size_t k = 0; k < 600; ++k) ASSERT_EQ(Level(k), k % 128) << k;
  EXPECT_EQ(Level(600), 0u);
  Record(std::vector<std::int16_t>(6000, -32768));
  ASSERT_EQ(vcSetVisualWaveDataMan(0), 0);
  EXPECT_EQ(Level(0), 128u);
  EXPECT_EQ(vcSetVisualWaveDataMan(1), 0);
  EXPECT_EQ(Level(0), 0u);
}

TEST_F(VoiceOverview, FillsWhatTheDivisionLeavesOver) {
  Record(std::vector<std::int16_t>(12345, 25600));  // 20 samples a level: 618 levels, the last of 5 samples
  ASSERT_EQ(vcSetVisualWaveDataMan(0), 0);
  EXPECT_EQ(Level(616), 100u);
  EXPECT_EQ(Level(617), 25u) << "missing samples are silent";
  EXPECT_EQ(Level(618), 0u);
  Record(std::vector<std::int16_t>(1199, 25600));  // would be 1199 levels
  ASSERT_EQ(vcSetVisualWaveDataMan(0), 0);
  EXPECT_EQ(Level(649), 100u);
}

TEST_F(VoiceOverview, TakesTheFirstQuarterMinuteOfALongRecording) {
  Record(std::vector<std::int16_t>(165750, 25600));
  EXPECT_EQ(vcSetVisualWaveDataMan(0), 0);
  Record(std::vector<std::int16_t>(200000, 25600));
  EXPECT_EQ(vcSetVisualWaveDataMan(0), 1);
  EXPECT_EQ(Level(600), 100u) << "276 samples, of which 150 lie behind the first 165,600: the rest goes on";
}

TEST_F(VoiceOverview, ShowsNothingOfAnEarlierVoiceForAShortOne) {
  Record(std::vector<std::int16_t>(6000, 25600));
  ASSERT_EQ(vcSetVisualWaveDataMan(0), 0);
  for (const std::size_t count : {599u, 1u, 0u}) {
    Record(std::vector<std::int16_t>(count, 25600));
    EXPECT_EQ(vcSetVisualWaveDataMan(0), 0);
    EXPECT_EQ(Level(0), 0u);
  }
  EXPECT_TRUE(boxes.Take().empty());
}

TEST_F(VoiceOverview, SaysWhyItCannotBeShown) {
  Record(std::vector<std::int16_t>(6000, 25600));
  ASSERT_EQ(vcSetVisualWaveDataMan(0), 0);
  const Bytes good = WaveFile({}, Bytes(8));
  const std::pair<Bytes, const char*> cases[] = {
      {{}, u8"临时文件打不开。ErrorNo 70"_gbk},
      {With(good, 8, {'X'}), u8"不是wave声音文件,无法播放。ErrorNo 71"_gbk},
      {RiffWave({Chunk("data", Bytes(8))}), u8"无效的wave声音文件,无法播放。ErrorNo 72"_gbk},
      {RiffWave({Chunk("fmt ", Bytes(14)), Chunk("data", Bytes(8))}), u8"无效的wave声音文件,无法播放ErrorNo 73。"_gbk},
      {Part(good, 0, 30), u8"临时文件读出错。ErrorNo 74"_gbk},
      {RiffWave({Chunk("fmt ", FormatRecord({}))}), u8"文件读出错。ErrorNo 76"_gbk},
  };
  for (const auto& [bytes, message] : cases) {
    WriteBytes("tmpwav/tmpmic.wav", bytes);
    EXPECT_EQ(vcSetVisualWaveDataMan(0), -1);
    EXPECT_EQ(boxes.Take(), (std::vector<Box>{{message, "Tavimo"}}));
    EXPECT_EQ(Level(0), 100u) << "the overview stays";
  }
  std::filesystem::remove("tmpwav/tmpmic.wav");
  EXPECT_EQ(vcSetVisualWaveDataMan(0), -1);
  EXPECT_EQ(boxes.Take(), (std::vector<Box>{{u8"临时文件打不开。ErrorNo 69"_gbk, "Tavimo"}}));
}

TEST_F(VoiceOverview, IsDrawnAroundItsMiddleLine) {
  digest::State().voiceVisualTable[0] = 128;
  digest::State().voiceVisualTable[599] = 64;
  const Picture picture(603, 100);
  vcDrawManWave(picture.dc, 100);
  EXPECT_EQ(picture.BlackRows(0), Rows(50, 50));
  EXPECT_EQ(picture.BlackRows(1), Rows(1, 99)) << "from 100 up to 1; row 100 lies outside";
  EXPECT_EQ(picture.BlackRows(2), Rows(50, 50));
  EXPECT_EQ(picture.BlackRows(600), Rows(26, 75)) << "column 600 stands behind the end of the line";
  EXPECT_EQ(picture.BlackRows(601), Rows(-1, -1));
  const Picture source(603, 100);
  vcDrawSrcWave(source.dc, 100);
  EXPECT_EQ(source.BlackRows(599), Rows(50, 50));
  EXPECT_EQ(source.BlackRows(600), Rows(-1, -1));
  for (const std::int32_t height : {0, -1, 2147483647}) vcDrawManWave(source.dc, height);
}

TEST_F(VoiceOverview, HasADigestWaveOfItsOwn) {
  const Picture picture(4, 9);
  vcDrawManVoiceDigestWave(picture.dc, 9, 4, 0, 1, 0);
  EXPECT_EQ(picture.BlackRows(0), Rows(-1, -1)) << "there is no digest yet";
  WriteBytes("tmpwav/tmpmic.tmp", {128, 128});
  vcDrawManVoiceDigestWave(picture.dc, 9, 4, 0, 1, 0);
  EXPECT_EQ(picture.BlackRows(0), Rows(0, 8));
  EXPECT_FALSE(digest::State().currentDigest.IsOpen());
}

}  // namespace
}  // namespace tavimo::tests
