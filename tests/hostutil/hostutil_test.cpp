// The host utilities, through the exports.
#include "hostutil/gbk_char_count.h"
#include "support/engine_test.h"
#include "support/message_boxes.h"

namespace tavimo::tests {
namespace {

class HostUtilities : public EngineTest {};

TEST_F(HostUtilities, CountCharactersAsHostsDo) {
  EXPECT_EQ(hostutil::GbkCharCount(""), 0);
  EXPECT_EQ(hostutil::GbkCharCount(u8"ab中文"_gbk), 4);
  EXPECT_EQ(hostutil::GbkCharCount("ab\xB0"), 4) << "a stray high byte counts twice";
}

TEST_F(HostUtilities, FindTheLastBackslashByBytes) {
  EXPECT_EQ(vcFindLastSlash("C:\\lesson\\a.wav"), 10);
  EXPECT_EQ(vcFindLastSlash("a\\"), 2);
  // The first byte is not looked at; the second byte of a character counts as a backslash.
  for (const char* none : {"\\abc", "\\", "abc", "", static_cast<const char*>(nullptr)})
    EXPECT_EQ(vcFindLastSlash(none), -1);
  EXPECT_EQ(vcFindLastSlash("ab\xD5\x5Cx"), 5);
}

TEST_F(HostUtilities, CompareWithoutRegardToAsciiCase) {
  EXPECT_EQ(vcStrcmp("ABC", "abc"), 0);
  EXPECT_LT(vcStrcmp("abc", "abd"), 0);
  EXPECT_LT(vcStrcmp("ab", "ABC"), 0);
  EXPECT_LT(vcStrcmp("[", "A"), 0) << "letters are compared in lower case";
  EXPECT_GT(vcStrcmp("\xB0", "z"), 0) << "bytes are unsigned";
  EXPECT_EQ(vcStrcmp(nullptr, ""), 0);
}

TEST_F(HostUtilities, KeepTheRecorderAlone) {
  MessageBoxes boxes;
  const struct {
    const char* running;
    std::int32_t program;
    const char* message;  // null: may run
  } cases[] = {
      {"kelvo-recorder", 0, u8"您已经启动了“Tavimo—录音机”，要关掉它才能启动“Tavimo”"_gbk},
      {"kelvo-recorder", 1, nullptr},
      {"kelvo-recorder", 2, u8"您已经启动了“Tavimo—录音机”，要关掉它才能启动“复习机”"_gbk},
      {"kelvo-player", 0, nullptr},
      {"kelvo-player", 1, u8"您已经启动了“Tavimo”，要关掉它才能启动“录音机”"_gbk},
      {"kelvo-player", 2, nullptr},
      {u8"Tavimo-复习机"_gbk, 0, nullptr},
      {u8"Tavimo-复习机"_gbk, 1, u8"您已经启动了“Tavimo—复习机”，要关掉它才能启动“录音机”"_gbk},
      {u8"Tavimo-复习机"_gbk, -1, nullptr},
  };
  for (const auto& c : cases) {
    const Window window(TV_WINDOW, c.running);
    EXPECT_EQ(vcCanRun(c.program), c.message == nullptr ? 1 : 0) << c.running << " beside " << c.program;
    EXPECT_EQ(boxes.Take(), c.message ? (std::vector<Box>{{c.message, "Tavimo"}}) : std::vector<Box>{});
  }
  EXPECT_EQ(vcCanRun(0), 1) << "all windows are gone";
}

TEST_F(HostUtilities, CopyWhatMatchesOverWhatIsThere) {
  fs::create_directories("from/folder");
  fs::create_directory("to");
  WriteText("from/a.txt", "new a");
  WriteText("from/b", "b");
  WriteText("from/locked.txt", "new");
  WriteText("to/a.txt", "a much longer old a");
  WriteText("to/locked.txt", "old");
  fs::permissions("to/locked.txt", fs::perms::owner_read);
  EXPECT_EQ(vcStrongCopyFile("to\\", "*.none", "from\\"), -1);
  EXPECT_EQ(vcStrongCopyFile("to\\", "*.*", "from\\"), 1);
  EXPECT_EQ(NamesIn("to"), (std::vector<std::string>{"a.txt", "b", "locked.txt"}));
  EXPECT_EQ(ReadBytes("to/a.txt"), ReadBytes("from/a.txt"));
  EXPECT_EQ(ReadBytes("to/locked.txt").size(), 3u) << "a read-only target is passed over";
  const std::string longFolder(300, 'x');
  EXPECT_EQ(vcStrongCopyFile("to\\", "*.*", longFolder.c_str()), -1);
  EXPECT_EQ(vcStrongCopyFile(nullptr, nullptr, nullptr), -1);
}

TEST_F(HostUtilities, DeleteFilesButNothingElse) {
  WriteText("a.txt", "a");
  WriteText("locked.txt", "a");
  fs::permissions("locked.txt", fs::perms::owner_read);
  EXPECT_EQ(vcDeleteFile("a.txt"), 0);
  EXPECT_FALSE(Exists("a.txt"));
  for (const char* path : {"a.txt", "locked.txt", "temp", "none\\a.txt", "*.txt", ""}) {
    EXPECT_EQ(vcDeleteTmpRecordFile(path), -1) << path;
  }
  EXPECT_EQ(vcDeleteFile(nullptr), -1);
  EXPECT_TRUE(Exists("locked.txt"));
  EXPECT_TRUE(Exists("temp"));
}

TEST_F(HostUtilities, FindTheDiscThatHoldsALesson) {
  fs::create_directories("disc1/other");
  fs::create_directories("disc2/lesson");
  WriteText("disc2/lesson/Unit1.wav", "x");
  EXPECT_EQ(vcGetCdRomDrive("lesson\\unit1.wav"), -1) << "no disc";
  const auto map = [&](char letter, const char* folder, int kind) {
    return tvMapDrive(letter, (scratch.Root() / folder).string().c_str(), kind);
  };
  if (map('G', "disc1", TV_DRIVE_CDROM) != 0) GTEST_SKIP() << "drive letters belong to the system here";
  map('H', "disc2", TV_DRIVE_FIXED);
  EXPECT_EQ(vcGetCdRomDrive("lesson\\unit1.wav"), -1) << "not on the disc, and the other drive is none";
  map('H', "disc2", TV_DRIVE_CDROM);
  EXPECT_EQ(vcGetCdRomDrive("lesson\\unit1.wav"), 7);
  const std::string longest = "lesson\\" + std::string(29, 'x');  // 36 bytes
  fs::create_directories(fs::path("disc2/lesson") / std::string(29, 'x'));
  fs::create_directories(fs::path("disc2/lesson") / std::string(30, 'x'));
  EXPECT_EQ(vcGetCdRomDrive(longest.c_str()), 7);
  EXPECT_EQ(vcGetCdRomDrive((longest + "x").c_str()), -1);
  EXPECT_EQ(vcGetCdRomDrive(""), -1);
  EXPECT_EQ(vcGetCdRomDrive(nullptr), -1);
  for (const char letter : {'G', 'H'}) tvMapDrive(letter, nullptr, TV_DRIVE_CDROM);
}

}  // namespace
}  // namespace tavimo::tests
