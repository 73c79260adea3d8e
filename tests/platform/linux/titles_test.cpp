// Titles of windows as other processes see them. Each test has a run-time folder and a cache folder of its own, so that
// programs that happen to run beside it play no part.
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>
#include <utility>

#include "platform/windows.h"
#include "support/engine_test.h"
#include "support/system.h"

namespace tavimo::tests {
namespace {

// Another process with one window, until it is killed.
class OtherProgram {
 public:
  explicit OtherProgram(const char* title, int kind = TV_WINDOW) {
    int ready[2];
    if (pipe2(ready, O_CLOEXEC) != 0) return;
    process_ = fork();
    if (process_ == 0) {
      tvCreateWindow(kind, title, nullptr);
      if (write(ready[1], "!", 1) == 1) pause();
      _exit(0);
    }
    char answer = 0;
    EXPECT_EQ(read(ready[0], &answer, 1), 1);
    close(ready[0]);
    close(ready[1]);
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;
  ~OtherProgram() { Kill(); }

  void Kill() {
    if (process_ > 0 && kill(process_, SIGKILL) == 0) waitpid(std::exchange(process_, -1), nullptr, 0);
  }

 private:
  pid_t process_ = -1;
};

class TitlesTest : public ::testing::Test {
 protected:
  TitlesTest() { fs::create_directory("run"); }

  ScratchFolder scratch;
  const fs::path titles = scratch.Root() / "run/tavimo-windows";
  ScopedVariable runtime{"XDG_RUNTIME_DIR", (scratch.Root() / "run").c_str()};
  ScopedVariable cache{"XDG_CACHE_HOME", nullptr};
  ScopedVariable home{"HOME", scratch.Root().c_str()};
};

TEST_F(TitlesTest, AreSeenUntilTheOtherProgramIsKilled) {
  OtherProgram recorder("kelvo-recorder");
  OtherProgram second("kelvo-recorder");
  EXPECT_TRUE(platform::WindowTitleExists("kelvo-recorder"));
  EXPECT_FALSE(platform::WindowTitleExists("kelvo-player"));
  recorder.Kill();
  EXPECT_TRUE(platform::WindowTitleExists("kelvo-recorder")) << "the second one still has it";
  second.Kill();
  EXPECT_FALSE(platform::WindowTitleExists("kelvo-recorder"));
  EXPECT_TRUE(NamesIn(titles).empty()) << "nothing is left of a killed program";
}

TEST_F(TitlesTest, AreComparedWholeAndWithoutRegardToCase) {
  const std::string longTitle(5000, 'x');
  const struct {
    std::string title, asked;
    bool found;
  } kCases[] = {
      {"kelvo-recorder", "KELVO-Recorder", true},
      {"kelvo-recorder", "kelvo-recorde", false},
      {"Tavimo-\xB8\xB4\xCF\xB0\xBB\xFA", "tavimo-\xB8\xB4\xCF\xB0\xBB\xFA", true},
      {"\x81\x41", "\x81\x61", false},                 // two different characters
      {"\xA3\xC1\xA3\xDA", "\xA3\xE1\xA3\xFA", true},  // full-width A and Z
      {"\xA7\xC1", "\xA7\xF1", true},                  // Cyrillic ya
      {"a\xB8", "A\xB8", true},                        // ends in half a character
      {longTitle, longTitle, true},
      {longTitle + "x", longTitle + "y", false},
  };
  for (const auto& [title, asked, found] : kCases) {
    SCOPED_TRACE(title.substr(0, 40) + " / " + asked.substr(0, 40));
    {
      const OtherProgram other(title.c_str());
      EXPECT_EQ(platform::WindowTitleExists(asked.c_str()), found);
    }
    const Window own(TV_WINDOW, title.c_str());
    EXPECT_EQ(platform::WindowTitleExists(asked.c_str()), found) << "in this process";
  }
  EXPECT_TRUE(NamesIn(titles).empty());
}

TEST_F(TitlesTest, BelongToTopLevelWindowsAlone) {
  const OtherProgram list("kelvo-player", TV_LIST_BOX);
  const Window bar(TV_PROGRESS_BAR, "kelvo-player");
  const Window untitled(TV_WINDOW, "");
  EXPECT_FALSE(platform::WindowTitleExists("kelvo-player"));
  EXPECT_FALSE(platform::WindowTitleExists(nullptr));
}

TEST_F(TitlesTest, AreNotKeptByProgramsThatTheHostStarts) {
  VcWindow window = tvCreateWindow(TV_WINDOW, "kelvo-player", nullptr);
  pid_t child = -1;
  const char* const arguments[] = {"sleep", "60", nullptr};
  ASSERT_EQ(posix_spawnp(&child, "sleep", nullptr, nullptr, const_cast<char**>(arguments), environ), 0);
  tvDestroyWindow(window);
  EXPECT_FALSE(platform::WindowTitleExists("kelvo-player"));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
}

TEST_F(TitlesTest, LieInAFolderThatNobodyElseCanEnter) {
  const Window window(TV_WINDOW, "kelvo-player");
  EXPECT_EQ(fs::status(titles).permissions(), fs::perms::owner_all);
  EXPECT_EQ(NamesIn(titles), std::vector<std::string>{"6b656c766f2d706c61796572"});
}

TEST_F(TitlesTest, LieInTheCacheFolderWhereThereIsNoPrivateRuntimeFolder) {
  const fs::path inCache = scratch.Root() / ".cache/tavimo-windows";
  fs::create_directory(titles);
  fs::create_directory(scratch.Root() / "elsewhere");
  fs::permissions(scratch.Root() / "elsewhere", fs::perms::owner_all);
  const auto useLink = [&] {
    fs::remove(titles);
    fs::create_directory_symlink(scratch.Root() / "elsewhere", titles);
  };
  const std::pair<const char*, std::function<void()>> kCases[] = {
      {"open to others", [&] { fs::permissions(titles, fs::perms::all); }},
      {"a link", useLink},
      {"a relative run-time folder", [] { SetVariable("XDG_RUNTIME_DIR", "run"); }},
      {"no run-time folder", [] { SetVariable("XDG_RUNTIME_DIR", nullptr); }},
  };
  for (const auto& [what, prepare] : kCases) {
    SCOPED_TRACE(what);
    prepare();
    const OtherProgram other("kelvo-player");
    EXPECT_TRUE(platform::WindowTitleExists("kelvo-player"));
    EXPECT_EQ(NamesIn(inCache).size(), 1u);
    EXPECT_TRUE(NamesIn(titles).empty());
  }
}

TEST_F(TitlesTest, AreSeenInTheirOwnProcessWhenThereIsNoFolderAtAll) {
  const ScopedVariable nowhere("XDG_RUNTIME_DIR", "/nowhere");
  const ScopedVariable homeless("HOME", nullptr);
  const Window window(TV_WINDOW, "kelvo-player");
  ASSERT_NE(window.handle, nullptr);
  EXPECT_TRUE(platform::WindowTitleExists("Kelvo-Player"));
}

}  // namespace
}  // namespace tavimo::tests
