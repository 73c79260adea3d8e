// Tapes made, appended and saved, byte by byte, and the message of every failure.
#include <array>
#include <climits>

#include "recording/recording_state.h"
#include "support/engine_test.h"
#include "support/message_boxes.h"

namespace tavimo::tests {
namespace {

class TapeFiles : public EngineTest {
 protected:
  MessageBoxes boxes;
};

TEST_F(TapeFiles, BeginWithTheirExactHeader) {
  ASSERT_EQ(vcNewTapeFile(11025, 16, 1, "tmpwav\\tmpmic.wav"), 0);
  const Bytes open = {'R', 'I', 'F', 'F', 0, 0, 0,   0,   'W',  'A',  'V', 'E', 'f',  'm',  't', ' ',
                      18,  0,   0,   0,   1, 0, 1,   0,   0x11, 0x2B, 0,   0,   0x22, 0x56, 0,   0,
                      2,   0,   16,  0,   0, 0, 'd', 'a', 't',  'a',  18,  0,   0,    0};
  EXPECT_EQ(ReadBytes("tmpwav/tmpmic.wav"), open) << "every byte is on its way to the disk at once";
  EXPECT_EQ(core::State().currentWaveFile.dataOffset, 46);
  EXPECT_EQ(core::State().currentWaveFile.filePosition, 46);
  vcCloseWaveFile(3);
  EXPECT_EQ(ReadBytes("tmpwav/tmpmic.wav"), With(With(open, 4, {38}), 42, {0}));

  ASSERT_EQ(vcNewTapeFile(22050, 8, 2, "tmpwav\\tmpmic.wav"), 0);
  vcCloseWaveFile(0);
  EXPECT_EQ(Part(ReadBytes("tmpwav/tmpmic.wav"), 20, 36),
            (Bytes{1, 0, 2, 0, 0x22, 0x56, 0, 0, 0x44, 0xAC, 0, 0, 2, 0, 8, 0}));
}

TEST_F(TapeFiles, TakeAnyFormatWithoutDividingByIt) {
  const std::int32_t formats[][3] = {{0, 0, 0},        {11025, 7, 1}, {11025, 16, 0}, {INT_MAX, INT_MAX, INT_MAX},
                                     {INT_MIN, 16, 2}, {0, 16, 2}};
  for (const auto& [rate, bits, channels] : formats) {
    vcSetTapeFileFormat(rate, bits, channels);
    vcGetRecordBufLenInTime();
    vcCountDiskSpace(60);
    vcCountDiskSpace(1e300);
    EXPECT_EQ(vcNewTapeFile(rate, bits, channels, "tmpwav\\a.wav"), 0);
    vcRecordTape();
    vcSetFilePosByTime(1000);
    vcGetWfOutTimePos();
    vcStopRecordTape();
    EXPECT_EQ(vcWaveInOpenForTape(rate, bits, channels), 0);
    vcCloseWaveFile(3);
  }
  std::int32_t found[3] = {};
  vcSetTapeFileFormat(44100, 16, 2);
  vcGetFileFormat(&found[0], &found[1], &found[2]);
  EXPECT_EQ(std::to_array(found), (std::array{44100, 16, 2}));
  EXPECT_EQ(core::State().tapeFormat.samplesPerLevel, 1764);
}

TEST_F(TapeFiles, TellHowLongABlockAndHowLargeARecordingIs) {
  vcSetTapeFileFormat(22050, 8, 1);
  EXPECT_NEAR(vcGetRecordBufLenInTime(), 56.9615, 0.0001);
  vcSetTapeFileFormat(11025, 16, 1);
  EXPECT_NEAR(vcGetRecordBufLenInTime(), 56.9615, 0.0001);
  EXPECT_EQ(vcCountDiskSpace(60), 1);
  EXPECT_EQ(vcCountDiskSpace(90.8), 2);
  EXPECT_EQ(vcCountDiskSpace(-90.8), -2);
}

TEST_F(TapeFiles, SayWhyTheyCannotBeMade) {
  const char* message = u8"无法创建临时磁带文件。ErrorNo 19"_gbk;
  WriteText("tmpwav/locked.wav", "old");
  fs::permissions("tmpwav/locked.wav", fs::perms::owner_read);
  for (const char* path : {"none\\a.wav", "tmpwav", "tmpwav\\locked.wav", ""}) {
    EXPECT_EQ(vcNewTapeFile(11025, 16, 1, path), -1) << path;
    EXPECT_EQ(boxes.Take(), (std::vector<Box>{{message, "Tavimo"}})) << path;
  }
  EXPECT_EQ(vcNewTapeFile(11025, 16, 1, nullptr), -1);
  EXPECT_EQ(ReadBytes("tmpwav/locked.wav").size(), 3u);
}

TEST_F(TapeFiles, SayWhyTheyCannotBeAppended) {
  const Bytes good = WaveFile({}, Bytes(100));
  const std::pair<Bytes, const char*> cases[] = {
      {{}, u8"文件读错误 。ErrorNo 21.1"_gbk},
      {With(good, 8, {'X'}), u8"不是wave声音文件,无法播放。 ErrorNo 22"_gbk},
      {RiffWave({Chunk("data", Bytes(8))}), u8"无效的wave声音文件,无法播放。 ErrorNo 23"_gbk},
      {RiffWave({Chunk("fmt ", Bytes(14)), Chunk("data", Bytes(8))}), u8"无效的wave声音文件,无法播放。 ErrorNo 24"_gbk},
      {Part(good, 0, 30), u8"无效的wave声音文件,无法播放。ErrorNo 25"_gbk},
      {WaveFile({3, 1, 44100, 32}, Bytes(8)), u8"无效的wave声音文件,无法播放。ErrorNo 25"_gbk},
      {RiffWave({Chunk("fmt ", FormatRecord({}))}), u8"无效的wave声音文件,无法播放。 ErrorNo 27"_gbk},
  };
  for (const auto& [bytes, message] : cases) {
    WriteBytes("a.wav", bytes);
    EXPECT_EQ(vcAppendTapeFile("a.wav"), -1);
    EXPECT_EQ(boxes.Take(), (std::vector<Box>{{message, "Tavimo"}}));
    EXPECT_FALSE(core::State().currentWaveFile.mmioHandle.IsOpen());
    EXPECT_EQ(ReadBytes("a.wav"), bytes);
  }
  ASSERT_GE(vcNewTapeFile(8000, 8, 1, "open.wav"), 0);
  EXPECT_EQ(vcAppendTapeFile("none.wav"), -1);
  EXPECT_TRUE(core::State().currentWaveFile.mmioHandle.IsOpen()) << "a tape that is open is not lost by a wrong name";
  vcCloseWaveFile(3);
  EXPECT_EQ(boxes.Take(), (std::vector<Box>{{u8"文件打不开。 ErrorNo 18"_gbk, "Tavimo"}}));
  WriteBytes("a.wav", good);
  fs::permissions("a.wav", fs::perms::owner_read);
  EXPECT_EQ(vcAppendTapeFile("a.wav"), -1);
  EXPECT_EQ(boxes.Take(),
            (std::vector<Box>{{u8"无法以添加方式打开该文件。该文件可能是只读文件。 ErrorNo 20"_gbk, "Tavimo"}}));
}

TEST_F(TapeFiles, CountEverythingBehindTheDataWhenAppended) {
  // 24 bits are no recording of ours, but appending takes them.
  WriteBytes("a.wav", WaveFile({1, 1, 8000, 24}, Bytes(24000)));
  EXPECT_EQ(vcAppendTapeFile("a.wav"), 1000);
  vcCloseWaveFile(0);
  Bytes tail =
      RiffWave({Chunk("fmt ", FormatRecord({1, 1, 8000, 8})), Chunk("data", Bytes(8000)), Chunk("LIST", Bytes(792))});
  WriteBytes("a.wav", tail);
  EXPECT_EQ(vcAppendTapeFile("a.wav"), 1100) << "8000 bytes of sound, 800 of the list with its header";
  EXPECT_EQ(core::State().tapeFormat.sampleRate, 8000);
  EXPECT_EQ(core::State().currentWaveFile.filePosition, 44);
  vcGotoFileEnd();
  EXPECT_EQ(core::State().currentWaveFile.filePosition, 44 + 8800);
  vcCloseReadOnlyFile();
  EXPECT_EQ(ReadBytes("a.wav"), tail) << "found chunks are not rewritten";
}

TEST_F(TapeFiles, AreSavedOverWhatIsThere) {
  WriteText("tmpwav/tmpmic.wav", "tape");
  EXPECT_EQ(vcSaveTapeFile("tmpwav\\tmpmic.wav", "take1.wav"), 0);
  EXPECT_FALSE(Exists("tmpwav/tmpmic.wav"));
  WriteText("tmpwav/tmpmic.wav", "second");
  EXPECT_EQ(vcSaveTapeFile("tmpwav\\tmpmic.wav", "take1.wav"), 0) << "replaces";
  EXPECT_EQ(ReadBytes("take1.wav").size(), 6u);
  EXPECT_FALSE(Exists("tmpwav/tmpmic.wav"));
  WriteText("tmpwav/tmpmic.wav", "third");
  fs::permissions("take1.wav", fs::perms::owner_read);
  for (const char* destination : {"take1.wav", "none\\take.wav", "temp", ""}) {
    EXPECT_EQ(vcSaveTapeFile("tmpwav\\tmpmic.wav", destination), -1) << destination;
  }
  EXPECT_EQ(ReadBytes("tmpwav/tmpmic.wav").size(), 5u) << "the source is left in place";
  EXPECT_EQ(ReadBytes("take1.wav").size(), 6u);
  EXPECT_EQ(vcSaveTapeFile("none.wav", "take2.wav"), -1);
  EXPECT_EQ(vcSaveTapeFile(nullptr, nullptr), -1);
}

}  // namespace
}  // namespace tavimo::tests
