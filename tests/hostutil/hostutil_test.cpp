// The host utilities, through the exports.
#include "hostutil/gbk_char_count.h"
#include "platform/gbk_literal.h"
#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

using namespace platform::literals;
namespace fs = std::filesystem;

class HostUtilities : public EngineTest {};

TEST_F(HostUtilities, CountCharactersAsHostsDo) {
  EXPECT_EQ(hostutil::GbkCharCount(""), 0);
  EXPECT_EQ(hostutil::GbkCharCount("ab"), 2);
  EXPECT_EQ(hostutil::GbkCharCount(u8"ab中文"_gbk), 4);
  EXPECT_EQ(hostutil::GbkCharCount("ab\xB0"), 4) << "a stray high byte counts twice";
  EXPECT_EQ(hostutil::GbkCharCount("\xB0"), 2);
}

TEST_F(HostUtilities, FindTheLastBackslashByBytes) {
  EXPECT_EQ(vcFindLastSlash("C:\\lesson\\a.wav"), 10);
  EXPECT_EQ(vcFindLastSlash("a\\"), 2);
  EXPECT_EQ(vcFindLastSlash("\\abc"), -1) << "the first byte is not looked at";
  EXPECT_EQ(vcFindLastSlash("\\"), -1);
  EXPECT_EQ(vcFindLastSlash("abc"), -1);
  EXPECT_EQ(vcFindLastSlash(""), -1);
  EXPECT_EQ(vcFindLastSlash(nullptr), -1);
  EXPECT_EQ(vcFindLastSlash("ab\xD5\x5Cx"), 5) << "the second byte of a character counts as one";
}

TEST_F(HostUtilities, CompareWithoutRegardToAsciiCase) {
  EXPECT_EQ(vcStrcmp("ABC", "abc"), 0);
  EXPECT_LT(vcStrcmp("abc", "abd"), 0);
  EXPECT_LT(vcStrcmp("ab", "ABC"), 0);
  EXPECT_LT(vcStrcmp("[", "A"), 0) << "letters are compared in lower case";
  EXPECT_GT(vcStrcmp("\xB0", "z"), 0) << "bytes are unsigned";
  EXPECT_EQ(vcStrcmp(nullptr, ""), 0);
}

struct Box {
  std::string text, caption;
};

TEST_F(HostUtilities, KeepTheRecorderAlone) {
  std::vector<Box> boxes;
  tvSetMessageBoxHandler(
      [](const char* text, const char* caption, void* user) {
        static_cast<std::vector<Box>*>(user)->push_back({text, caption});
      },
      &boxes);
  struct Case {
    const char* running;
    std::int32_t program;
    const char* message;  // null: may run
  };
  const Case cases[] = {
      {"kelvo-recorder", 0, u8"您已经启动了“Tavimo—录音机”，要关掉它才能启动“Tavimo”"_gbk},
      {"kelvo-recorder", 1, nullptr},
      {"kelvo-recorder", 2, u8"您已经启动了“Tavimo—录音机”，要关掉它才能启动“复习机”"_gbk},
      {"kelvo-recorder", 7, u8"您已经启动了“Tavimo—录音机”，要关掉它才能启动“复习机”"_gbk},
      {"kelvo-player", 0, nullptr},
      {"kelvo-player", 1, u8"您已经启动了“Tavimo”，要关掉它才能启动“录音机”"_gbk},
      {"kelvo-player", 2, nullptr},
      {u8"Tavimo-复习机"_gbk, 0, nullptr},
      {u8"Tavimo-复习机"_gbk, 1, u8"您已经启动了“Tavimo—复习机”，要关掉它才能启动“录音机”"_gbk},
      {u8"Tavimo-复习机"_gbk, -1, nullptr},
  };
  for (const Case& c : cases) {
    boxes.clear();
    const Window window(TV_WINDOW, c.running);
    EXPECT_EQ(vcCanRun(c.program), c.message == nullptr ? 1 : 0) << c.running << " beside " << c.program;
    ASSERT_EQ(boxes.size(), c.message == nullptr ? 0u : 1u);
    if (c.message == nullptr) continue;
    EXPECT_EQ(boxes[0].text, c.message);
    EXPECT_EQ(boxes[0].caption, "Tavimo");
  }
  EXPECT_EQ(vcCanRun(0), 1) << "all windows are gone";
  tvSetMessageBoxHandler(nullptr, nullptr);
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
  if (tvMapDrive('G', (scratch.Root() / "disc1").string().c_str(), TV_DRIVE_CDROM) != 0) {
    GTEST_SKIP() << "drive letters belong to the system here";
  }
  tvMapDrive('H', (scratch.Root() / "disc2").string().c_str(), TV_DRIVE_FIXED);
  EXPECT_EQ(vcGetCdRomDrive("lesson\\unit1.wav"), -1) << "not on the disc, and the other drive is none";
  tvMapDrive('H', (scratch.Root() / "disc2").string().c_str(), TV_DRIVE_CDROM);
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
