// The checks a host makes before it uses a file, and the ways an open tape is closed.
#include "core/current_wave_file.h"

#include <array>

#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

using platform::OpenMode;
using platform::RiffFile;

class WaveFiles : public EngineTest {};

TEST_F(WaveFiles, AreToldFromEverythingElse) {
  const Bytes mono = WaveFile({}, Bytes(100));
  const Bytes format = FormatRecord({});
  const struct {
    const char* what;
    Bytes bytes;
    std::int32_t isWave;
  } cases[] = {
      {"8 bits stereo", WaveFile({1, 2, 8000, 8}, Bytes(10)), 1},
      {"three channels are not this check's business", WaveFile({1, 3, 8000, 8}, Bytes(9)), 1},
      {"no data chunk", RiffWave({Chunk("fmt ", format)}), 1},
      {"format behind an odd list", RiffWave({Chunk("LIST", Bytes(7)), Chunk("fmt ", format)}), 1},
      {"format of 20 bytes", RiffWave({Chunk("fmt ", Joined(format, {0, 0, 9, 9}))}), 1},
      {"format chunk past every end", With(mono, 16, Bytes(4, 0xFF)), 1},
      {"24 bits", WaveFile({1, 1, 44100, 24}, Bytes(9)), 0},
      {"float", WaveFile({3, 1, 44100, 32}, Bytes(8)), 0},
      {"other form type", With(mono, 8, {'A'}), 0},
      {"lower-case id", With(mono, 0, {'r'}), 0},
      {"an unfinished tape of size 0", With(mono, 4, Bytes(4)), 0},
      {"no format chunk", RiffWave({Chunk("data", Bytes(8))}), 0},
      {"format chunk of 14 bytes", RiffWave({Chunk("fmt ", Part(format, 0, 14)), Chunk("data", Bytes(8))}), 0},
      {"cut inside the format", Part(mono, 0, 30), 0},
      {"cut inside the header", Part(mono, 0, 10), 0},
      {"empty", {}, 0},
  };
  for (const auto& c : cases) {
    WriteBytes("a.wav", c.bytes);
    EXPECT_EQ(vcIsWaveFile("a.wav"), c.isWave) << c.what;
  }
  EXPECT_EQ(vcIsWaveFile("missing.wav"), 0);
  EXPECT_EQ(vcIsWaveFile("temp"), 0) << "a folder";
  EXPECT_EQ(vcIsWaveFile(""), 0);
  EXPECT_EQ(vcIsWaveFile(nullptr), 0);
}

TEST_F(WaveFiles, LeaveTheirFormatBehindAlsoWhenRefused) {
  WriteBytes("a.wav", WaveFile({1, 2, 44100, 24}, Bytes(12)));
  EXPECT_EQ(vcIsWaveFile("a.wav"), 0);
  EXPECT_EQ(core::State().currentFormat, (core::PcmFormat{1, 2, 44100, 264600, 6, 24}));
  std::int32_t found[] = {-1, -1, -1};
  EXPECT_EQ(vcGetFileFormat(&found[0], &found[1], &found[2]), 0);
  EXPECT_EQ(std::to_array(found), (std::array{11025, 0, 0})) << "the recording format, not the examined file's";
  EXPECT_EQ(vcGetFileFormat(nullptr, nullptr, nullptr), 0);
}

TEST_F(WaveFiles, CanBeExaminedWhileATapeIsOpen) {
  WriteBytes("tape.wav", WaveFile({1, 1, 22050, 16}, Bytes(100)));
  WriteBytes("other.wav", WaveFile({1, 2, 8000, 8}, Bytes(100)));
  ASSERT_EQ(vcIsWaveFile("tape.wav"), 1);
  core::State().currentWaveFile.mmioHandle = RiffFile::Open("tape.wav", OpenMode::ReadWrite);
  const core::PcmFormat tapeFormat = core::State().currentFormat;
  EXPECT_EQ(vcIsWaveFile("other.wav"), 1);
  EXPECT_EQ(core::State().currentFormat, tapeFormat);
}

TEST_F(WaveFiles, KnowMp3FilesByTheirNameAlone) {
  for (const char* path : {"a.mp3", "a.MP3", "D:\\x\\b.Mp3", ".mp3"}) EXPECT_EQ(vcIsMp3File(path), 1) << path;
  for (const char* path : {"mp3", "a.mp", "a.mp3 ", "a.wav", ""}) EXPECT_EQ(vcIsMp3File(path), 0) << path;
  EXPECT_EQ(vcIsMp3File(nullptr), 0);
}

// Opens a wave file as a tape the way appending does, with the given length of sound.
void OpenTape(const char* path, std::int32_t dataLength) {
  core::CurrentWaveFile& tape = core::State().currentWaveFile;
  tape.mmioHandle = RiffFile::Open(path, OpenMode::ReadWrite);
  ASSERT_TRUE(tape.mmioHandle.IsOpen());
  ASSERT_TRUE(tape.mmioHandle.Descend(tape.riffChunk));
  tape.subChunk.id = platform::FourCc("data");
  ASSERT_TRUE(tape.mmioHandle.Find(tape.subChunk, tape.riffChunk));
  tape.dataOffset = static_cast<std::int32_t>(tape.subChunk.dataOffset);
  tape.dataLength = dataLength;
}

TEST_F(WaveFiles, ClosedInMode2CarryTheNewLengthAndKeepTheirBytes) {
  const Bytes before = WaveFile({}, Bytes(200, 7));
  WriteBytes("a.wav", before);
  OpenTape("a.wav", 120);
  vcGotoFileEnd();
  EXPECT_EQ(core::State().currentWaveFile.filePosition, 44 + 120);
  EXPECT_EQ(core::State().currentWaveFile.mmioHandle.Position(), 44 + 120);
  vcCloseWaveFile(2);
  EXPECT_FALSE(core::State().currentWaveFile.mmioHandle.IsOpen());
  EXPECT_EQ(ReadBytes("a.wav"), With(before, 40, {120})) << "the data chunk's size; the RIFF chunk's stays";
}

TEST_F(WaveFiles, ThatWereOnlyFoundAreClosedWithoutAWrite) {
  const Bytes before = WaveFile({}, Bytes(201, 7));
  for (const std::int32_t mode : {0, 1, 3, 4, -1}) {
    WriteBytes("a.wav", before);
    OpenTape("a.wav", 3);
    vcCloseWaveFile(mode);
    EXPECT_FALSE(core::State().currentWaveFile.mmioHandle.IsOpen());
    EXPECT_EQ(ReadBytes("a.wav"), before) << "mode " << mode;
  }
  OpenTape("a.wav", 3);
  for (int i = 0; i < 2; ++i) vcCloseReadOnlyFile();  // the second time none is open
  for (const std::int32_t mode : {0, 2, 3}) vcCloseWaveFile(mode);
  vcGotoFileEnd();
  EXPECT_EQ(ReadBytes("a.wav"), before);
}

}  // namespace
}  // namespace tavimo::tests
