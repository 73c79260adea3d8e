// Drive letters and the paths that go through them.
#include "platform/linux/drives.h"

#include <gtest/gtest.h>

#include "platform/gbk_literal.h"
#include "platform/linux/native_path.h"
#include "support/scratch_folder.h"

namespace tavimo::platform {
namespace {

std::string Described(const DriveMap& map) {
  std::string text;
  for (int i = 0; i < kDriveCount; ++i) {
    if (map.At(i).kind == DriveKind::None) continue;
    text += static_cast<char>('A' + i);
    text += (map.At(i).kind == DriveKind::CdRom ? "*" : "=") + map.At(i).folder + ' ';
  }
  return text;
}

TEST(Drives, DiscsGetTheFreeLettersFromDOn) {
  tests::ScratchFolder folder;
  tests::WriteText("mounts",
                   "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
                   "30 22 11:0 / /media/u/My\\040CD ro,nosuid shared:2 - iso9660 /dev/sr0 ro\n"
                   "31 22 7:0 / /mnt/image ro - udf /dev/loop0 ro\n"
                   "a line of another kind\n"
                   "32 22 0:40 / /home/u/disc ro - fuse.fuseiso image.iso ro\n"
                   "33 22 8:2 / /home rw - ext4 /dev/iso9660 rw\n");
  EXPECT_EQ(Described(DriveMap("missing", "")), "C= ");
  EXPECT_EQ(Described(DriveMap("mounts", "")), "C= D*/media/u/My CD E*/mnt/image F*/home/u/disc ");
  EXPECT_EQ(Described(DriveMap("mounts", "E=/media/x/;a=cdrom:/mnt/y")),
            "A*/mnt/y C= D*/media/u/My CD E=/media/x F*/mnt/image G*/home/u/disc ");
}

TEST(Drives, DiscsComeAndGo) {
  tests::ScratchFolder folder;
  const std::string first = "30 22 11:0 / /media/first ro - iso9660 /dev/sr0 ro\n";
  const std::string second = "31 22 11:1 / /media/second ro - udf /dev/sr1 ro\n";
  tests::WriteText("mounts", first + second);
  DriveMap map("mounts", "");
  tests::WriteText("mounts", second);
  map.ReadMounts("mounts");
  EXPECT_EQ(Described(map), "C= E*/media/second ") << "the others keep their letters";
  tests::WriteText("mounts", second + first);
  map.ReadMounts("mounts");
  EXPECT_EQ(Described(map), "C= D*/media/first E*/media/second ");
}

TEST(Drives, EntriesOfAnotherFormArePassedOver) {
  EXPECT_EQ(Described(DriveMap("missing", ";;E;=/x;1=/x;E=;EE=/x;F=relative;G=cdrom:x;H:/x;c=/opt;z=/")), "C=/opt Z= ");
}

TEST(Drives, MoreDiscsThanLettersHarmNothing) {
  tests::ScratchFolder folder;
  std::string mounts;
  for (int i = 0; i < 40; ++i) mounts += "1 1 11:0 / /mnt/" + std::to_string(i) + " ro - iso9660 x ro\n";
  tests::WriteText("mounts", mounts);
  const DriveMap map("mounts", "");
  EXPECT_EQ(map.At(25).folder, "/mnt/22");
}

class MappedDrives : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directories("disc/Unit 1");
    tests::WriteText("disc/Unit 1/TEXT.txt", "on the disc");
    ASSERT_TRUE(MapDrive(10, Disc().c_str(), DriveKind::CdRom));
  }
  void TearDown() override {
    for (const int drive : {2, 10, 11}) MapDrive(drive, nullptr, DriveKind::None);
  }
  std::string Disc() { return (folder_.Root() / "disc").string(); }

  tests::ScratchFolder folder_;
};

TEST_F(MappedDrives, ALetterOpensWhatLiesInItsFolder) {
  EXPECT_EQ(GetDriveKind(10), DriveKind::CdRom);
  EXPECT_EQ(GetDriveKind(2), DriveKind::Fixed);
  for (const int none : {-1, 11, 26}) EXPECT_EQ(GetDriveKind(none), DriveKind::None);
  for (const char* path : {"K:\\Unit 1\\TEXT.txt", "k:/unit 1/text.TXT", "K:unit 1\\text.txt"}) {
    EXPECT_EQ(NativePath(path), Disc() + "/Unit 1/TEXT.txt") << path;
  }
  EXPECT_EQ(NativePath("L:\\x"), std::nullopt);
  ASSERT_TRUE(MapDrive(10, nullptr, DriveKind::None));
  EXPECT_EQ(NativePath("K:\\Unit 1"), std::nullopt);
}

TEST_F(MappedDrives, OnlyAFolderCanBeMapped) {
  for (const std::string& folder : {Disc() + "/Unit 1/TEXT.txt", std::string("disc"), std::string("/missing folder")}) {
    EXPECT_FALSE(MapDrive(10, folder.c_str(), DriveKind::Fixed)) << folder;
  }
  EXPECT_FALSE(MapDrive(10, Disc().c_str(), DriveKind::None));
  for (const int drive : {-1, 26}) EXPECT_FALSE(MapDrive(drive, Disc().c_str(), DriveKind::Fixed));
  EXPECT_EQ(GetDriveKind(10), DriveKind::CdRom) << "what was mapped stays";
}

TEST_F(MappedDrives, AnAbsolutePathGetsTheLetterOfTheLongestFolder) {
  ASSERT_TRUE(MapDrive(11, (Disc() + "/Unit 1/").c_str(), DriveKind::Fixed));
  const struct {
    std::string native;
    std::optional<std::string> engine;
  } cases[] = {{Disc() + "/Unit 1/TEXT.txt", "L:\\TEXT.txt"},
               {Disc() + "/Unit 1", "L:\\"},
               {Disc() + "/Unit 12", "K:\\Unit 12"},
               {"/usr/share/x", "C:\\usr\\share\\x"},
               {"/", "C:\\"},
               {"a/b", "a\\b"},
               {"a:b", ".\\a:b"},
               {"/\xE8\xAA\xA0/x", "C:\\\xD5\x5C\\x"},
               {"/\xE3\x83\xBB", std::nullopt},
               {"/a\\b", std::nullopt},
               {"/\xFF", std::nullopt},
               {"", std::nullopt}};
  for (const auto& test : cases) EXPECT_EQ(EnginePath(test.native), test.engine) << test.native;
  ASSERT_TRUE(MapDrive(2, Disc().c_str(), DriveKind::Fixed));
  EXPECT_EQ(EnginePath("/usr"), "\\usr") << "no letter leads there any more";
}

TEST_F(MappedDrives, NamesAreFoundWithoutRegardToCase) {
  std::filesystem::create_directories("Disc/\xE8\xAA\xA0");
  tests::WriteText("Disc/\xE8\xAA\xA0/b.WAV", "");
  tests::WriteText("Disc/\xE8\xAA\xA0/B.wav", "");
  const struct {
    const char* engine;
    std::optional<std::string> native;
  } cases[] = {{"disc\\unit 1\\text.txt", "disc/Unit 1/TEXT.txt"},    // the exact folder wins over the other case
               {"DISC\\\xD5\x5C\\b.wav", "Disc/\xE8\xAA\xA0/B.wav"},  // of two, the first by byte value
               {"Disc\\\xD5\x5C\\b.WAV", "Disc/\xE8\xAA\xA0/b.WAV"},
               {"DISC\\Unit 3\\New.txt", "Disc/Unit 3/New.txt"},  // stays as spelled where nothing is found
               {"TEMP\\New.tmp", "temp/New.tmp"},
               {"a:b", std::nullopt},
               {"\xB8", std::nullopt},
               {"", std::nullopt},
               {nullptr, std::nullopt}};
  for (const auto& test : cases) EXPECT_EQ(NativePath(test.engine), test.native) << testing::PrintToString(test.native);
  EXPECT_EQ(NativePath(("\\" + Disc().substr(1)).c_str()), Disc()) << "a leading separator means the root";
}

}  // namespace
}  // namespace tavimo::platform
