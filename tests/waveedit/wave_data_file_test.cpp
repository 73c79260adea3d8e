// Reading and writing wave data block by block, and the copy of a segment.
#include "waveedit/wave_data_file.h"

#include <tuple>

#include "support/engine_test.h"
#include "waveedit/wave_segment.h"

namespace tavimo::tests {
namespace {

using namespace waveedit;

class WaveData : public EngineTest {
 protected:
  static WaveDataFile Named(const char* path) {
    WaveDataFile file;
    EXPECT_TRUE(file.path.Assign(core::TextOf(path)));
    return file;
  }
};

TEST_F(WaveData, OpensWhatHasAFormatOfOneOrTwoChannelsAndData) {
  const Bytes format = FormatRecord({});
  const struct {
    const char* what;
    Bytes bytes;
    std::int32_t result, dataOffset;
  } cases[] = {
      {"plain", WaveFile({}, Bytes(10)), 1, 44},
      {"format of 18 bytes", RiffWave({Chunk("fmt ", Joined(format, {0, 0})), Chunk("data", Bytes(10))}), 1, 46},
      {"odd list before data", RiffWave({Chunk("fmt ", format), Chunk("LIST", Bytes(5)), Chunk("data", Bytes(10))}), 1,
       58},
      {"float of two channels", WaveFile({3, 2, 44100, 32}, Bytes(16)), 1, 44},
      {"three channels", WaveFile({1, 3, 44100, 16}, Bytes(12)), -1, 0},
      {"no channel", WaveFile({1, 0, 44100, 16}, Bytes(12)), -1, 0},
      {"data before format", RiffWave({Chunk("data", Bytes(10)), Chunk("fmt ", format)}), -1, 0},
      {"no data", RiffWave({Chunk("fmt ", format)}), -1, 0},
      {"RF64", With(WaveFile({}, Bytes(10)), 1, {'F', '6', '4'}), -1, 0},
  };
  for (const auto& c : cases) {
    WriteBytes("a.wav", c.bytes);
    WaveDataFile file = Named("a.wav");
    EXPECT_EQ(WaveDataOpen(file), c.result) << c.what;
    EXPECT_EQ(file.mmioHandle.IsOpen(), c.result == 1) << c.what;
    EXPECT_EQ(c.result == 1 ? file.dataOffset : 0, c.dataOffset) << c.what;
    WaveDataClose(file);
  }
}

TEST_F(WaveData, IsNeverReadPastItsChunkOrTheFile) {
  const Bytes sound = Numbered(1001);
  WriteBytes("a.wav", RiffWave({Chunk("fmt ", FormatRecord({1, 1, 8000, 8})), Chunk("data", sound),
                                Chunk("LIST", Bytes(50, 9))}));
  WaveDataFile file = Named("a.wav");
  ASSERT_EQ(WaveDataOpen(file), 1);
  Bytes buffer(2000);
  EXPECT_EQ(WaveDataRead(file, buffer.data(), 0), 0);
  EXPECT_EQ(WaveDataRead(file, buffer.data(), -5), 0);
  EXPECT_EQ(WaveDataRead(file, buffer.data(), 2000), 1001);
  buffer.resize(1001);
  EXPECT_EQ(buffer, sound);
  EXPECT_EQ(WaveDataRead(file, buffer.data(), 10), 0);
  WaveDataSeek(file, 0, 0);
  EXPECT_EQ(WaveDataRead(file, buffer.data(), 1), 1);
  EXPECT_EQ(buffer[0], sound[0]);
  WaveDataSeek(file, 10, 1);
  EXPECT_EQ(WaveDataRead(file, buffer.data(), 1), 1);
  EXPECT_EQ(buffer[0], sound[11]);
  EXPECT_FALSE(file.failed);
  WaveDataSeek(file, -5000, 0);
  EXPECT_TRUE(file.failed);
  WaveDataClose(file);

  for (const std::uint8_t top : Bytes{0x7F, 0x80, 0xFF}) {  // sizes beyond the file, and negative as signed numbers
    WriteBytes("a.wav", With(WaveFile({1, 1, 8000, 8}, sound), 43, {top}));
    WaveDataFile damaged = Named("a.wav");
    ASSERT_EQ(WaveDataOpen(damaged), 1);
    buffer.assign(3000, 0);
    EXPECT_EQ(WaveDataRead(damaged, buffer.data(), 3000), top == 0x7F ? 1002 : 0);  // with the pad byte
    WaveDataClose(damaged);
  }
}

TEST_F(WaveData, TellsItsFormatAndDuration) {
  WriteBytes("a.wav", WaveFile({1, 2, 22050, 16}, Bytes(88200)));
  WaveInfo info;
  ASSERT_EQ(ReadWaveInfo("a.wav", info), 1);
  const auto found = std::tie(info.channels, info.bitsPerSample, info.sampleRate, info.dataLength, info.durationMs);
  EXPECT_EQ(found, std::tuple(2, 16, 22050, 88200, 1000));
  WriteBytes("a.wav", WaveFile({1, 2, 0, 16}, Bytes(8)));
  ASSERT_EQ(ReadWaveInfo("a.wav", info), 1);
  EXPECT_EQ(info.durationMs, 0);
  core::PcmFormat format;
  EXPECT_EQ(ReadWaveFormat("a.wav", format), 1);
  EXPECT_EQ(ReadWaveFormat("none.wav", format), -1);
  EXPECT_EQ(ReadWaveFormat(nullptr, format), -1);
  EXPECT_EQ(ReadWaveInfo(std::string(200, 'x').c_str(), info), -1);
}

Bytes SoundOf(const char* path) {
  const Bytes file = ReadBytes(path);
  return {file.begin() + 44, file.end()};
}

TEST_F(WaveData, CopiesSegments) {
  const Bytes sound = Numbered(44100);
  WriteBytes("a.wav", WaveFile({}, sound));  // 16-bit mono 11025 Hz: 2 s
  Bytes buffer(1000);
  const struct {
    std::uint32_t startMs, endMs;
    std::size_t from, count;  // of the sound; the position 64 lies 20 bytes into it
  } cases[] = {
      {0, 999, 20, 22114},
      {1000, 999, 20 + 22050, 64},
      {1000, 1000, 20 + 22050, 86},
      {1900, 5000, 20 + 41894, 44100 - 20 - 41894},
      {2000, 3000, 0, 0},    // from the end on
      {60000, 70000, 0, 0},  // far past it
      {1000, 500, 0, 0},     // the end far before the start
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CopyWaveSegment("a.wav", "b.wav", c.startMs, c.endMs, buffer.data(), 1000), 1);
    EXPECT_EQ(SoundOf("b.wav"), Part(sound, c.from, c.from + c.count)) << c.startMs << " to " << c.endMs;
  }
  EXPECT_EQ(CopyWaveSegment("a.wav", "b.wav", 0, 999, buffer.data(), 0), 1) << "nothing is copied";
  EXPECT_EQ(SoundOf("b.wav"), Bytes{});
}

TEST_F(WaveData, RefusesToCopyASegmentOverItsOwnSource) {
  const Bytes before = WaveFile({}, Numbered(4000));
  WriteBytes("a.wav", before);
  Bytes buffer(1000);
  for (const char* spelling : {"a.wav", ".\\a.wav", "A.WAV", "temp\\..\\a.wav"}) {
    EXPECT_EQ(CopyWaveSegment("a.wav", spelling, 0, 10, buffer.data(), 1000), -1) << spelling;
    EXPECT_EQ(ReadBytes("a.wav"), before) << spelling;
  }
  EXPECT_EQ(vcExtractWaveSeg("none.wav", "b.wav", 0, 10, buffer.data(), 1000), -1);
  EXPECT_FALSE(Exists("b.wav")) << "a source that cannot be opened creates nothing";
  EXPECT_EQ(CopyWaveSegment("a.wav", "none\\b.wav", 0, 10, buffer.data(), 1000), -1);
  EXPECT_EQ(CopyWaveSegment("a.wav", "b.wav", 0x80000000, 0x80000100, buffer.data(), 1000), 1);
  EXPECT_EQ(ReadBytes("b.wav"), WaveFile({}, {})) << "a start without a place lies past the end";
}

}  // namespace
}  // namespace tavimo::tests
