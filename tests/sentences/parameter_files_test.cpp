// The hosts' settings: sound parameters by recording, and files of three numbers.
#include <chrono>

#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

class ParameterFiles : public EngineTest {};

TEST_F(ParameterFiles, BelongToARecordingByItsTime) {
  WriteText("unit1.wav", "recording");
  SetWriteTime("unit1.wav", WriteTimeOf("unit1.wav") - 987654321);
  const Bytes record = Numbered(20);
  EXPECT_EQ(vcIfSoundParaFileExist("unit1.wav"), 0);
  ASSERT_EQ(vcWriteSoundFilePara("unit1.wav", "temp\\unit1.par", record.data()), 1);
  EXPECT_EQ(ReadBytes("temp/unit1.par"), record);
  EXPECT_EQ(vcIfSoundParaFileExist("unit1.wav"), 1);
  Bytes read(20);
  EXPECT_EQ(vcReadSoundFilePara("temp\\unit1.par", read.data()), 1);
  EXPECT_EQ(read, record);

  SetWriteTime("unit1.wav", WriteTimeOf("unit1.wav") + 100);
  EXPECT_EQ(vcIfSoundParaFileExist("unit1.wav"), 0) << "the recording was replaced";
  WriteText("unit1.tmp", "a digest, not parameters");
  EXPECT_EQ(vcIfSoundParaFileExist("unit1.wav"), 0);
  WriteText("unit1.par", "beside the recording");
  EXPECT_EQ(vcIfSoundParaFileExist("unit1.wav"), 1);
  EXPECT_EQ(ReadBytes("temp/unit1.par"), ReadBytes("unit1.par"));
  EXPECT_EQ(vcIfSoundParaFileExist(std::string(100, 'x').c_str()), 0);
  EXPECT_EQ(vcIfSoundParaFileExist(nullptr), 0);
}

TEST_F(ParameterFiles, RefuseWhatCannotBeWrittenOrRead) {
  Bytes record(20, 1);
  EXPECT_EQ(vcWriteSoundFilePara("a.wav", "none\\a.par", record.data()), -1);
  EXPECT_EQ(vcWriteSoundFilePara("a.wav", "temp\\a.par", nullptr), -1);
  EXPECT_FALSE(Exists("temp/a.par"));
  EXPECT_EQ(vcWriteSoundFilePara(nullptr, "temp\\a.par", record.data()), 1) << "no time to take over";
  EXPECT_EQ(vcReadSoundFilePara("none.par", record.data()), -1);
  WriteBytes("short.par", {7, 8});
  EXPECT_EQ(vcReadSoundFilePara("short.par", record.data()), 1);
  EXPECT_EQ(record[1], 8);
  EXPECT_EQ(record[2], 1) << "what the file does not hold stays";
}

TEST_F(ParameterFiles, HoldThreeNumbersAsLines) {
  vcWriteParaFile("a.txt", 7, -2, 300);
  EXPECT_EQ(ReadText("a.txt"), "7\r\n-2\r\n300\r\n");
  EXPECT_EQ(vcIfParaMatch("a.txt", 7, -2, 300), 1);
  EXPECT_EQ(vcIfParaMatch("a.txt", 7, 300, -2), 0);
  vcWriteParaFile("a.txt", -2147483647 - 1, 2147483647, 0);
  EXPECT_EQ(vcIfParaMatch("a.txt", -2147483647 - 1, 2147483647, 0), 1);
  vcWriteParaFile("none\\a.txt", 1, 2, 3);
  EXPECT_EQ(vcIfParaMatch("none\\a.txt", 1, 2, 3), 0);
  EXPECT_EQ(vcIfParaMatch(nullptr, 1, 2, 3), 0);
}

TEST_F(ParameterFiles, MatchByTheNumbersTheirLinesBeginWith) {
  const std::string zeros(95, '0');
  const struct {
    std::string text;
    std::int32_t a, b, c, match;
  } cases[] = {
      {" \t1 \t\r\n+2x\r\n-3.5\r\n", 1, 2, -3, 1},
      {"1\r\n2\r\n", 1, 2, 2, 0},  // a missing line
      {"", 0, 0, 0, 0},
      {"\n\n\n", 0, 0, 0, 1},                      // lines without digits
      {"1\n2\n3\n4\n", 1, 2, 3, 1},                // the rest is not looked at
      {"1\n2\n4294967299\n", 1, 2, 3, 0},          // out of 32 bits
      {zeros + "12\n34\n", 12, 34, 0, 0},          // 98 bytes and the line end
      {zeros + "1\n2\n3\n", 1, 2, 3, 1},           // 97 and the line end fit
      {zeros + "123\n4\n", 12 * 10 + 3, 0, 4, 1},  // 98: the line end is the next line
      {zeros + "1234\n5\n", 123, 4, 5, 1},         // the rest is the next line
  };
  for (const auto& c : cases) {
    WriteText("a.txt", c.text);
    EXPECT_EQ(vcIfParaMatch("a.txt", c.a, c.b, c.c), c.match) << c.text;
  }
}

}  // namespace
}  // namespace tavimo::tests
