// Streams, replacements and what is done to files by name; with faults at every operation where something could be lost.
#include "platform/files.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/file_faults.h"
#include "support/scratch_folder.h"

namespace tavimo::platform {
namespace {

namespace fs = std::filesystem;
using tests::NamesIn;
using tests::ReadText;
using tests::WriteText;

bool IsReadOnly(const char* path) { return (fs::status(path).permissions() & fs::perms(0222)) == fs::perms::none; }

bool Replace(const char* path, const char* text) {
  ReplacementFile file;
  if (!file.Begin(path)) return false;
  file.Write(text, static_cast<std::int64_t>(std::string_view(text).size()));
  return file.Commit(ReplacementFile::Durability::Synced);
}

class Files : public testing::Test {
 protected:
  void SetUp() override {
    fs::create_directory("d");
    WriteText("d/a.txt", "old");
    WriteText("d/locked.txt", "locked");
    fs::permissions("d/locked.txt", fs::perms(0444));
  }
  tests::ScratchFolder folder_;
};

TEST_F(Files, OpensOnlyFiles) {
  for (const char* path : {"d\\a.txt", "D/A.TXT", ".\\d\\..\\d\\a.txt", "d\\locked.txt"}) {
    EXPECT_TRUE(FileStream::Open(path, OpenMode::Read).IsOpen()) << path;
  }
  const std::string longName(300, 'x');
  for (const char* path : {static_cast<const char*>(nullptr), "", "d", "d\\", ".", "..", "d\\a.txt\\", "d\\a.txt\\x",
                           "missing\\x", "d\\\xB8", longName.c_str()}) {
    for (const OpenMode mode : {OpenMode::Read, OpenMode::ReadWrite, OpenMode::Create}) {
      EXPECT_FALSE(FileStream::Open(path, mode).IsOpen()) << (path == nullptr ? "null" : path);
    }
    EXPECT_FALSE(Replace(path, "x"));
  }
  EXPECT_FALSE(FileStream::Open("d\\missing", OpenMode::ReadWrite).IsOpen());
  EXPECT_EQ(NamesIn("d"), (std::vector<std::string>{"a.txt", "locked.txt"}));
}

TEST_F(Files, AReadOnlyFileIsReadAndNothingElse) {
  EXPECT_FALSE(FileStream::Open("d\\locked.txt", OpenMode::ReadWrite).IsOpen());
  EXPECT_FALSE(FileStream::Open("d\\locked.txt", OpenMode::Create).IsOpen());
  EXPECT_FALSE(Replace("d\\locked.txt", "new"));
  EXPECT_FALSE(CopyFileOver("d\\a.txt", "d\\LOCKED.txt"));
  EXPECT_FALSE(RemoveFile("d\\locked.txt"));
  EXPECT_EQ(ReadText("d/locked.txt"), "locked");
  EXPECT_TRUE(ResetAttributes("d\\locked.txt"));
  EXPECT_TRUE(ResetAttributes("d"));
  EXPECT_FALSE(ResetAttributes("d\\missing"));
  EXPECT_TRUE(Replace("d\\locked.txt", "new"));
  EXPECT_TRUE(RemoveFile("D\\locked.TXT"));
  for (const char* path : {"d", "d\\a.txt\\", "d\\missing", ""}) EXPECT_FALSE(RemoveFile(path)) << path;
  EXPECT_FALSE(RemoveFile(nullptr));
}

TEST_F(Files, AStreamHasOnePositionForReadingAndWriting) {
  FileStream stream = FileStream::Open("d\\new", OpenMode::Create);
  ASSERT_TRUE(stream.Write("abcdef", 6));
  EXPECT_EQ(ReadText("d/new"), "abcdef") << "not buffered";
  EXPECT_EQ(stream.Seek(-4, SeekFrom::Current), 2);
  char bytes[10];
  EXPECT_EQ(stream.Read(bytes, 10), 4);
  EXPECT_EQ(stream.Read(bytes, 10), 0);
  EXPECT_EQ(stream.Seek(-7, SeekFrom::End), -1);
  EXPECT_EQ(stream.Seek(INT64_MAX, SeekFrom::Current), -1);
  EXPECT_EQ(stream.Position(), 6);
  EXPECT_EQ(stream.Seek(2, SeekFrom::End), 8);
  ASSERT_TRUE(stream.Write("x", 1));
  EXPECT_EQ(ReadText("d/new"), std::string("abcdef\0\0x", 9));
  EXPECT_EQ(stream.Length(), 9);
  FileStream other = std::move(stream);
  EXPECT_FALSE(stream.IsOpen());  // NOLINT(bugprone-use-after-move): the promise under test
  for (int i = 0; i < 2; ++i) EXPECT_TRUE(other.Close());
  EXPECT_EQ(other.Read(bytes, 1), -1);
  EXPECT_FALSE(other.Write("x", 1));
  EXPECT_EQ(other.Seek(0, SeekFrom::Start), -1);
  EXPECT_EQ(other.Length(), -1);
  EXPECT_TRUE(FileStream::Open("d\\new", OpenMode::Create).IsOpen());
  EXPECT_EQ(ReadText("d/new"), "") << "creating truncates at once";
}

TEST_F(Files, AFaultShowsInTheResultOfItsOperation) {
  FileStream stream = FileStream::Open("d\\a.txt", OpenMode::ReadWrite);
  char bytes[8];
  {
    const FaultPlan plan = FaultPlan::FailAt(1);
    EXPECT_FALSE(stream.Write("new!", 4));
    EXPECT_EQ(stream.Position(), 2) << "behind what was written";
    EXPECT_TRUE(stream.Write("w", 1)) << "one operation only";
  }
  EXPECT_EQ(ReadText("d/a.txt"), "new");
  stream.Seek(0, SeekFrom::Start);
  {
    const FaultPlan plan = FaultPlan::FailAt(1, FileFault::EndsEarly);
    EXPECT_EQ(stream.Read(bytes, 2), 1);
    EXPECT_EQ(plan.OperationsMade(), 1);
  }
  const FaultPlan plan = FaultPlan::FailAt(2, FileFault::Fails, FaultExtent::AllFromThere);
  EXPECT_EQ(stream.Read(bytes, 8), 2);
  EXPECT_EQ(stream.Read(bytes, 8), -1);
  EXPECT_FALSE(stream.Flush() || stream.Close() || FileStream::Open("d\\a.txt", OpenMode::Read).IsOpen());
  EXPECT_FALSE(RemoveFile("d\\a.txt") || MoveFileTo("d\\a.txt", "d\\b.txt"));
}

TEST_F(Files, AReplacementShowsOnlyWhenItIsWhole) {
  FileStream reader = FileStream::Open("d\\a.txt", OpenMode::Read);
  ReplacementFile file;
  ASSERT_TRUE(file.Begin("d\\A.TXT"));
  file.Write("new", 3);
  EXPECT_TRUE(file.IsWhole());
  EXPECT_EQ(ReadText("d/a.txt"), "old");
  file.Discard();
  EXPECT_FALSE(file.Commit(ReplacementFile::Durability::Cached)) << "nothing to commit";
  ASSERT_TRUE(file.Begin("d\\a.txt")) << "once more with the same object";
  file.Write("newer", 5);
  fs::current_path("d");
  EXPECT_TRUE(file.Commit(ReplacementFile::Durability::Cached)) << "the folder was settled by Begin";
  fs::current_path("..");
  EXPECT_EQ(ReadText("d/a.txt"), "newer");
  char bytes[4] = "";
  EXPECT_EQ(reader.Read(bytes, 3), 3);
  EXPECT_STREQ(bytes, "old") << "an open stream goes on reading the old bytes";
}

// Runs a change with the fault at every operation in turn, each time from the same start; check says what must hold.
void ForEveryFault(FaultExtent extent, const std::function<void()>& prepare, const std::function<bool()>& change,
                   const std::function<void(bool)>& check) {
  std::int64_t operations = 0;
  {
    prepare();
    const FaultPlan plan = FaultPlan::Watch();
    ASSERT_TRUE(change());
    operations = plan.OperationsMade();
  }
  ASSERT_GT(operations, 3);
  for (std::int64_t n = 1; n <= operations; ++n) {
    SCOPED_TRACE(n);
    prepare();
    bool isDone = false;
    {
      const FaultPlan plan = FaultPlan::FailAt(n, FileFault::Fails, extent);
      isDone = change();
    }
    check(isDone);
  }
}

TEST_F(Files, NothingIsLostWhereverAReplacementFails) {
  const auto prepare = [] { WriteText("d/a.txt", "old"); };
  const auto change = [] { return Replace("d\\a.txt", "new text"); };
  const std::vector<std::string> names = NamesIn("d");
  for (const FaultExtent extent : {FaultExtent::OneOperation, FaultExtent::AllFromThere}) {
    ForEveryFault(extent, prepare, change, [&](bool isDone) {
      EXPECT_EQ(ReadText("d/a.txt"), isDone ? "new text" : "old");
      EXPECT_TRUE(extent == FaultExtent::OneOperation || change()) << "what a kill leaves behind is in nobody's way";
      EXPECT_EQ(NamesIn("d"), names);
    });
  }
}

TEST_F(Files, ACopyCarriesContentTimeAndTheReadOnlyMark) {
  const std::string large(300'000, 'L');
  WriteText("d/large", large);
  const std::int64_t time = tests::WriteTimeOf("d/large") - 1'234'567'891;
  tests::SetWriteTime("d/large", time);
  ASSERT_TRUE(CopyFileOver("d\\large", "d\\A.txt"));
  EXPECT_EQ(ReadText("d/a.txt"), large);
  EXPECT_EQ(tests::WriteTimeOf("d/a.txt"), time);
  EXPECT_FALSE(IsReadOnly("d/a.txt"));
  ASSERT_TRUE(CopyFileOver("d\\locked.txt", "d\\copy"));
  EXPECT_TRUE(IsReadOnly("d/copy"));
  EXPECT_FALSE(CopyFileOver("d\\locked.txt", "d\\copy")) << "the copy is read-only too";
  fs::create_hard_link("d/large", "d/second name");
  const char* const refused[][2] = {
      {"d\\large", "D\\LARGE"}, {"d\\large", "d\\second name"}, {"d", "d\\x"},     {"d\\large", "d"},
      {"missing", "d\\x"},      {"d\\large", "missing\\x"},     {nullptr, "d\\x"}, {"d\\large", nullptr}};
  for (const auto& pair : refused) EXPECT_FALSE(CopyFileOver(pair[0], pair[1]));
  EXPECT_EQ(ReadText("d/large"), large);
}

TEST_F(Files, NothingIsLostWhereverACopyFails) {
  const std::string large(200'000, 'L');
  WriteText("large", large);
  const std::vector<std::string> names = NamesIn("d");
  for (const FaultExtent extent : {FaultExtent::OneOperation, FaultExtent::AllFromThere}) {
    ForEveryFault(
        extent, [] { WriteText("d/a.txt", "old"); }, [] { return CopyFileOver("large", "d\\a.txt"); },
        [&](bool isDone) {
          EXPECT_EQ(ReadText("d/a.txt") == large, isDone);
          EXPECT_TRUE(isDone || ReadText("d/a.txt") == "old");
          EXPECT_EQ(ReadText("large"), large);
          EXPECT_TRUE(Replace("d\\a.txt", ""));
          EXPECT_EQ(NamesIn("d"), names);
        });
  }
}

TEST_F(Files, MovingNeverReplacesAnotherFile) {
  WriteText("d/b.txt", "other");
  const char* const refused[][2] = {{"d\\a.txt", "d\\b.txt"}, {"d\\a.txt", "temp"},       {"missing", "d\\x"},
                                    {"missing", "d\\b.txt"},  {"d\\a.txt", "missing\\x"}, {"d\\a.txt", ""},
                                    {nullptr, "d\\x"}};
  for (const auto& pair : refused) EXPECT_FALSE(MoveFileTo(pair[0], pair[1]));
  EXPECT_EQ(NamesIn("d"), (std::vector<std::string>{"a.txt", "b.txt", "locked.txt"}));
  EXPECT_TRUE(MoveFileTo("d\\a.txt", "d\\a.txt"));
  EXPECT_TRUE(MoveFileTo("d\\locked.txt", "temp\\moved"));
  EXPECT_EQ(NamesIn("d"), (std::vector<std::string>{"a.txt", "b.txt"}));
  EXPECT_EQ(ReadText("temp/moved"), "locked");
  EXPECT_TRUE(IsReadOnly("temp/moved"));
  EXPECT_TRUE(MoveFileTo("d", "e"));
  EXPECT_EQ(ReadText("e/a.txt"), "old");
}

}  // namespace
}  // namespace tavimo::platform
