// The host kit's paths where drives are folders.

#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

TEST(HostPaths, AreTurnedWholeOrNotAtAll) {
  char path[64] = "";
  EXPECT_EQ(tvEnginePath("/课/a.wav", path, 12), 12);
  EXPECT_STREQ(path, "C:\\\xBF\xCE\\a.wav");
  EXPECT_EQ(tvEnginePath("/课/a.wav", path, 11), -1);
  EXPECT_EQ(tvNativePath("C:\\no\\\xD5\\such", path, sizeof path), 12) << "the second byte separates nothing";
  EXPECT_STREQ(path, "/no/誠such");
}

TEST(HostPaths, FollowTheDriveLettersThatFoldersHave) {
  const ScratchFolder scratch;
  const std::string folder = (scratch.Root() / "temp").string();
  char path[64];
  EXPECT_EQ(tvNativePath("Q:\\a.wav", path, sizeof path), -1);
  EXPECT_EQ(tvMapDrive('q', folder.c_str(), TV_DRIVE_CDROM), 0);
  EXPECT_EQ(tvNativePath("Q:\\a.wav", path, sizeof path), static_cast<int>(folder.size()) + 7);
  EXPECT_EQ(path, folder + "/a.wav");
  EXPECT_EQ(tvEnginePath((folder + "/a.wav").c_str(), path, sizeof path), 9);
  EXPECT_STREQ(path, "Q:\\a.wav");

  for (const auto& [letter, kind] : {std::pair{'@', 3}, {'[', 3}, {'{', 3}, {'\xC1', 3}, {'R', 4}, {'R', 0}}) {
    EXPECT_EQ(tvMapDrive(letter, folder.c_str(), kind), -1) << letter;
  }
  EXPECT_EQ(tvMapDrive('Q', nullptr, TV_DRIVE_CDROM), 0);
  EXPECT_EQ(tvNativePath("Q:\\a.wav", path, sizeof path), -1);
}

}  // namespace
}  // namespace tavimo::tests
