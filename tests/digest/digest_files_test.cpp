// Finding, opening and shortening digests.
#include <chrono>

#include "hostutil/temp_side_file.h"
#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

class DigestFiles : public EngineTest {};

TEST_F(DigestFiles, LieInTempAndBesideTheRecording) {
  const char* const cases[][3] = {
      {"D:\\lessons\\unit1.wav", "temp\\unit1.tmp", "D:\\lessons\\unit1.tmp"},
      {"D:\\set.2\\lesson", "temp\\lesson.tmp", "D:\\set.tmp"},
      {"a.b.wav", "temp\\a.b.tmp", "a.b.tmp"},
      {"D:\\x\\", "temp\\.tmp", "D:\\x\\.tmp"},
      {"D:\\\xD5\x5C.wav", "temp\\.tmp", "D:\\\xD5\x5C.tmp"}};  // by bytes: 0x5C is a separator here
  for (const auto& [recording, working, beside] : cases) {
    hostutil::SidePaths paths;
    ASSERT_TRUE(hostutil::DeriveSidePaths(recording, ".tmp", paths)) << recording;
    EXPECT_STREQ(paths.working.CString(), working);
    EXPECT_STREQ(paths.beside.CString(), beside);
  }
  hostutil::SidePaths paths;
  EXPECT_TRUE(hostutil::DeriveSidePaths(std::string(99, 'n'), ".tmp", paths));
  // The last two have 200 bytes, and no room for .tmp.
  for (const std::string& recording : {std::string(), std::string(100, 'n'), "D:\\" + std::string(193, 'd') + "\\abc",
                                       "D:\\" + std::string(192, 'd') + "\\abc"}) {
    EXPECT_FALSE(hostutil::DeriveSidePaths(recording, ".tmp", paths)) << recording.size();
  }
}

TEST_F(DigestFiles, AreCurrentOnlyWithTheTimeOfTheirRecording) {
  fs::create_directory("lessons");
  WriteText("lessons/unit1.wav", "recording");
  EXPECT_EQ(vcIfDigestFileExist("lessons\\unit1.wav"), 0);
  WriteText("temp/unit1.tmp", "working");
  SetWriteTime("temp/unit1.tmp", WriteTimeOf("lessons/unit1.wav"));
  EXPECT_EQ(vcIfDigestFileExist("lessons\\unit1.wav"), 1);
  SetWriteTime("temp/unit1.tmp", WriteTimeOf("lessons/unit1.wav") + 100);
  EXPECT_EQ(vcIfDigestFileExist("lessons\\unit1.wav"), 0) << "another time is another recording";
  EXPECT_EQ(vcIfDigestFileExist("lessons\\gone.wav"), 0);
  EXPECT_EQ(vcIfDigestFileExist(nullptr), 0);
  EXPECT_EQ(vcIfDigestFileExist(""), 0);

  WriteText("lessons/unit1.tmp", "prebuilt");
  EXPECT_EQ(vcIfDigestFileExist("lessons\\unit1.wav"), 1);
  EXPECT_EQ(ReadBytes("temp/unit1.tmp"), ReadBytes("lessons/unit1.tmp")) << "copied whatever its time";

  // Two discs with a recording of one name each: files on a disc are read-only.
  fs::create_directory("disc2");
  WriteText("disc2/unit1.wav", "another recording");
  WriteText("disc2/unit1.tmp", "another digest");
  for (const char* digest : {"lessons/unit1.tmp", "disc2/unit1.tmp"}) fs::permissions(digest, fs::perms::owner_read);
  EXPECT_EQ(vcIfDigestFileExist("lessons\\unit1.wav"), 1);
  EXPECT_EQ(vcIfDigestFileExist("disc2\\unit1.wav"), 1);
  EXPECT_EQ(ReadBytes("temp/unit1.tmp"), ReadBytes("disc2/unit1.tmp"));
}

TEST_F(DigestFiles, AreOpenedOneAtATime) {
  WriteText("temp/a.tmp", "12345");
  WriteText("temp/b.tmp", "");
  EXPECT_EQ(vcOpenDigestFile("temp\\a.tmp"), 5);
  EXPECT_EQ(vcOpenDigestFile("temp\\b.tmp"), 0);
  EXPECT_EQ(vcOpenDigestFile("temp\\none.tmp"), -1);
  EXPECT_FALSE(digest::State().currentDigest.IsOpen()) << "a failed opening closes the earlier one too";
  EXPECT_EQ(vcOpenDigestFile("temp"), -1);
  EXPECT_EQ(vcOpenDigestFile(nullptr), -1);
  vcCloseDigestFile();
  vcCloseDigestFile();
}

TEST_F(DigestFiles, AreShortenedByDroppingLevelsEvenly) {
  for (const auto& [durationMs, left] :
       {std::pair{5000, 100u}, {3961, 100u}, {3960, 99u}, {2000, 50u}, {1960, 0u}, {-2147483647, 0u}}) {
    WriteBytes("temp/a.tmp", Numbered(100));
    const auto time = WriteTimeOf("temp/a.tmp") - 18'000'000'000'000;
    SetWriteTime("temp/a.tmp", time);
    vcAdjustDigestFile("temp\\a.tmp", durationMs);
    EXPECT_EQ(ReadBytes("temp/a.tmp").size(), left) << durationMs;
    EXPECT_EQ(WriteTimeOf("temp/a.tmp"), time) << "it stays current";
  }
  WriteBytes("temp/a.tmp", {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
  vcAdjustDigestFile("temp\\a.tmp", 360);  // three too many: every fourth goes
  EXPECT_EQ(ReadBytes("temp/a.tmp"), (Bytes{1, 2, 3, 5, 6, 7, 9, 10, 11}));
  EXPECT_TRUE(NamesIn("tmpwav").empty());
}

TEST_F(DigestFiles, StayAsTheyAreWhenTheyCannotBeShortened) {
  WriteBytes("temp/a.tmp", Numbered(100));
  fs::remove("tmpwav");
  vcAdjustDigestFile("temp\\a.tmp", 2000);
  EXPECT_EQ(ReadBytes("temp/a.tmp"), Numbered(100));
  fs::create_directory("tmpwav");
  fs::permissions("temp/a.tmp", fs::perms::owner_read);
  vcAdjustDigestFile("temp\\a.tmp", 2000);
  EXPECT_EQ(ReadBytes("temp/a.tmp"), Numbered(100)) << "read-only";
  WriteBytes("tmpwav/tmptmptmp.tmp", Numbered(100));
  vcAdjustDigestFile("tmpwav\\tmptmptmp.tmp", 2000);
  EXPECT_EQ(ReadBytes("tmpwav/tmptmptmp.tmp"), Numbered(100)) << "the engine's own working file";
  vcAdjustDigestFile("temp\\none.tmp", 2000);
  vcAdjustDigestFile(nullptr, 2000);
}

}  // namespace
}  // namespace tavimo::tests
