// What only this system has: links, pipes, modes, files without a name, folders on several file systems.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/file_faults.h"
#include "platform/files.h"
#include "support/scratch_folder.h"

namespace tavimo::platform {
namespace {

namespace fs = std::filesystem;
using tests::NamesIn;
using tests::ReadText;
using tests::WriteText;

unsigned ModeOf(const fs::path& path) { return static_cast<unsigned>(fs::status(path).permissions()); }

bool Replace(const char* path, std::string_view text) {
  ReplacementFile file;
  if (!file.Begin(path)) return false;
  file.Write(text.data(), static_cast<std::int64_t>(text.size()));
  return file.Commit(ReplacementFile::Durability::Cached);
}

class PosixFiles : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directory("d");
    WriteText("d/a.txt", "old");
  }
  tests::ScratchFolder folder_;
};

TEST_F(PosixFiles, PipesAndDevicesAreNotOpened) {
  ASSERT_EQ(mkfifo("d/pipe", 0666), 0);
  for (const char* path : {"d\\pipe", "\\dev\\null"}) {
    for (const OpenMode mode : {OpenMode::Read, OpenMode::ReadWrite, OpenMode::Create}) {
      EXPECT_FALSE(FileStream::Open(path, mode).IsOpen()) << path;
    }
    EXPECT_FALSE(Replace(path, "x")) << path;
  }
}

TEST_F(PosixFiles, ALinkIsReadAndReplacedThrough) {
  fs::create_symlink("a.txt", "d/link");
  fs::create_symlink("nowhere", "d/dangling");
  EXPECT_TRUE(FileStream::Open("d\\link", OpenMode::Read).IsOpen());
  EXPECT_TRUE(Replace("d\\link", "through"));
  EXPECT_TRUE(fs::is_symlink("d/link"));
  EXPECT_EQ(ReadText("d/a.txt"), "through");
  EXPECT_FALSE(FileStream::Open("d\\dangling", OpenMode::Read).IsOpen());
  EXPECT_FALSE(Replace("d\\dangling", "x"));
  EXPECT_EQ(NamesIn("d"), (std::vector<std::string>{"a.txt", "dangling", "link"}));
}

TEST_F(PosixFiles, AReplacementKeepsTheModeAndANewFileGetsThePlainOne) {
  fs::permissions("d/a.txt", fs::perms(0606));
  const mode_t mask = umask(027);
  EXPECT_TRUE(Replace("d\\a.txt", "x"));
  EXPECT_TRUE(Replace("in the current folder", "x"));
  umask(mask);
  EXPECT_EQ(ModeOf("d/a.txt"), 0606u);
  EXPECT_EQ(ModeOf("in the current folder"), 0640u);
  fs::permissions("d/a.txt", fs::perms(0444));
  EXPECT_TRUE(ResetAttributes("d\\a.txt"));
  EXPECT_EQ(ModeOf("d/a.txt"), 0644u);
}

TEST_F(PosixFiles, AReplacementReachesTheLongestName) {
  const std::string name = std::string(251, 'n') + ".txt";
  EXPECT_TRUE(Replace(name.c_str(), "long"));
  EXPECT_EQ(ReadText(name), "long");
}

TEST_F(PosixFiles, AReplacementWithANameFromTheStartTakesAStaleOnesPlace) {
  WriteText("d/.tavimo-e3bf6dfa.new", "left by a kill");
  const FaultPlan plan = FaultPlan::FailAt(1);  // no file without a name
  ReplacementFile file;
  ASSERT_TRUE(file.Begin("d\\a.txt"));
  file.Write("new", 3);
  const std::vector<std::string> names = NamesIn("d");
  ASSERT_EQ(names.size(), 2u) << "the stale one's name is the new one's";
  fs::remove("d/" + names[0]);
  WriteText("d/" + names[0], "another process's half");
  EXPECT_FALSE(file.Commit(ReplacementFile::Durability::Cached));
  EXPECT_EQ(ReadText("d/a.txt"), "old");
  EXPECT_EQ(ReadText("d/" + names[0]), "another process's half");
}

TEST_F(PosixFiles, MovingToAnotherFileSystemCopiesAndRemoves) {
  char other[] = "/dev/shm/tavimo-test-XXXXXX";
  if (mkdtemp(other) == nullptr) GTEST_SKIP() << "no second file system";
  const std::string target = std::string(other) + "/moved";
  EXPECT_TRUE(MoveFileTo("d\\a.txt", target.c_str()));
  EXPECT_EQ(ReadText(target), "old");
  EXPECT_TRUE(NamesIn("d").empty());
  fs::remove_all(other);
}

TEST_F(PosixFiles, TimesKeepTheirNanosecondsOnBothSidesOfZero) {
  for (const std::int64_t value : {std::int64_t{-1}, std::int64_t{0}, std::int64_t{4'102'444'800'123'456'789}}) {
    ASSERT_TRUE(SetLastWriteTime("d\\A.txt", FileTime{value}));
    FileTime time;
    ASSERT_TRUE(GetLastWriteTime("d\\a.TXT", time));
    EXPECT_EQ(time, FileTime{value});
  }
  FileTime time;
  EXPECT_FALSE(GetLastWriteTime("d\\missing", time));
  EXPECT_FALSE(SetLastWriteTime("d\\missing", time));
}

// As documented for the other system; the one that stands in for it in tests lets "?" match exactly one. Names that no
// engine path can spell are not found.
TEST_F(PosixFiles, AQuestionMarkStandsForOneCharacterOrForNoneBeforeADot) {
  for (const char* name : {"b.wav", "高誠.wav", "long.wav", "\\.wav", "\xFF.wav"}) WriteText(fs::path("d") / name, "");
  DirectorySearch search("d\\??.wav");
  EXPECT_STREQ(search.Next(), "b.wav");
  EXPECT_STREQ(search.Next(), "\xB8\xDF\xD5\\.wav");
  EXPECT_EQ(search.Next(), nullptr);
}

TEST_F(PosixFiles, MovingToAnotherCaseIsARenamingAndToASecondNameRefused) {
  EXPECT_TRUE(MoveFileTo("d\\a.txt", "D\\A.TXT"));
  fs::create_hard_link("d/A.TXT", "d/second name");
  EXPECT_FALSE(MoveFileTo("d\\a.txt", "d\\second name"));
  EXPECT_EQ(NamesIn("d"), (std::vector<std::string>{"A.TXT", "second name"}));
}

}  // namespace
}  // namespace tavimo::platform
