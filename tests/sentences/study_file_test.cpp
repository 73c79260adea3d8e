// Study files: where they lie, what is read of them, and that they are replaced whole or not at all.
#include "sentences/study_file.h"

#include <cstring>

#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

using Starts = std::vector<std::uint32_t>;

class StudyFiles : public EngineTest {
 protected:
  // A study file with one bookmark, at 5 ms with the label "x", and two starts.
  static Bytes Sample() { return Joined(With(Bytes(320), 0, {5, 0, 0, 0, 'x'}), {40, 0, 0, 0, 0x18, 1, 0, 0}); }

  static void SetBookMark(std::size_t slot, std::uint32_t timeMs) {
    core::WriteU32(sentences::State().bookMarkTable.records[slot].bytes.data(), timeMs);
  }
};

TEST_F(StudyFiles, LieBesideTheRecordingAndInTheFolderZud) {
  const char* const cases[][3] = {{"D:\\course\\unit1.wav", "D:\\course\\unit1.zud", "zud\\unit1.zud"},
                                  {"D:\\a.b\\unit1", "D:\\a.b\\unit1.zud", "zud\\unit1.zud"},
                                  {"unit1.wav", "unit1.zud", "zud\\unit1.zud"},
                                  {".wav", ".wav.zud", "zud\\.wav.zud"},  // the first byte is not looked at
                                  {"\\unit1.wav", "\\unit1.zud", "zud\\unit1.zud"},
                                  {"D:\\x\\.wav", "D:\\x\\.zud", "zud\\.zud"}};
  for (const auto& [recording, beside, inFolder] : cases) {
    sentences::StudyPaths paths;
    ASSERT_TRUE(sentences::DeriveStudyPaths(recording, paths)) << recording;
    EXPECT_STREQ(paths.beside.CString(), beside);
    EXPECT_STREQ(paths.studyFolder.CString(), inFolder);
  }
  sentences::StudyPaths paths;
  EXPECT_TRUE(sentences::DeriveStudyPaths("D:\\c\\" + std::string(214, 'x') + ".wav", paths)) << "223 bytes";
  EXPECT_FALSE(sentences::DeriveStudyPaths("D:\\c\\" + std::string(215, 'x') + ".wav", paths)) << "224 bytes";
  EXPECT_FALSE(sentences::DeriveStudyPaths("D:\\" + std::string(216, 'x') + ".wav", paths)) << "no room behind zud";
  EXPECT_FALSE(sentences::DeriveStudyPaths("D:\\" + std::string(217, 'x'), paths)) << "no room for .zud";
  EXPECT_FALSE(sentences::DeriveStudyPaths("", paths));
}

TEST_F(StudyFiles, HoldAsManyStartsAsTheirLengthSays) {
  for (const auto& [length, count] : {std::pair{320, 0}, {323, 0}, {324, 1}, {330, 2}, {319, -1}, {0, -1}}) {
    WriteBytes("unit1.zud", Bytes(static_cast<std::size_t>(length), 1));
    SetBookMark(3, 99);
    EXPECT_EQ(vcOpenSentenceFile("unit1.wav"), count) << length;
    EXPECT_FALSE(sentences::State().bookMarkTable.HasAnyTime()) << "opening empties the table";
    EXPECT_EQ(sentences::State().studyFile.IsOpen(), count >= 0);
  }
  for (const std::string& none : {std::string("none.wav"), std::string(300, 'x')}) {
    SetBookMark(3, 99);
    EXPECT_EQ(vcOpenSentenceFile(none.c_str()), -1);
    EXPECT_FALSE(sentences::State().bookMarkTable.HasAnyTime()) << "else they would be stored for this recording";
  }
  EXPECT_EQ(vcOpenSentenceFile(nullptr), -1);
}

TEST_F(StudyFiles, InTheFolderComeFirstAndAreTheOnlyOnesWritten) {
  WriteBytes("unit1.zud", Sample());
  const Starts starts = {0, 400, 800};
  vcWriteExtraFileData("unit1.wav", starts.data(), 3);
  EXPECT_EQ(ReadBytes("unit1.zud"), Sample());
  const Bytes expected = Joined(Bytes(320), {0, 0, 0, 0, 0x90, 1, 0, 0, 0x20, 3, 0, 0});
  EXPECT_EQ(ReadBytes("zud/unit1.zud"), expected);
  EXPECT_EQ(vcOpenSentenceFile("unit1.wav"), 3);

  vcWriteExtraFileData("unit1.wav", nullptr, 3);
  EXPECT_EQ(ReadBytes("zud/unit1.zud"), expected) << "a host's slip loses nothing";
  vcWriteExtraFileData("unit1.wav", starts.data(), 1);
  EXPECT_FALSE(Exists("zud/unit1.zud")) << "neither sentences nor bookmarks";
  EXPECT_EQ(vcOpenSentenceFile("unit1.wav"), 2) << "the one beside the recording is found again";
}

TEST_F(StudyFiles, AreReadWithTheirBookmarks) {
  WriteBytes("zud/unit1.zud", Sample());
  ASSERT_EQ(vcOpenSentenceFile("D:\\unit1.wav"), 2);
  Starts pair = {1, 2};
  vcGetSentence(80, &pair[0], &pair[1]);
  EXPECT_EQ(pair, (Starts{40, 280}));
  vcGetSentence(81, &pair[0], &pair[1]);
  EXPECT_EQ(pair, (Starts{280, 280})) << "a value the file does not hold";
  vcGetSentence(0, nullptr, &pair[1]);
  EXPECT_EQ(pair[1], 'x');
  for (const std::int32_t index : {-5, 2147483647}) vcGetSentence(index, &pair[0], &pair[1]);
  EXPECT_EQ(pair[0], 280u);

  Starts starts(3, 7);
  EXPECT_EQ(vcReadSentenceData(starts.data(), 3), 3) << "also after other reads";
  EXPECT_EQ(starts, (Starts{40, 280, 7}));
  EXPECT_EQ(sentences::State().bookMarkTable.records[0].TimeMs(), 5u);
  EXPECT_EQ(vcReadSentenceData(starts.data(), 3), -1) << "it was closed";
  vcGetSentence(80, &pair[0], &pair[1]);
  EXPECT_EQ(pair[0], 280u) << "nothing is open";

  ASSERT_EQ(vcOpenSentenceFile("unit1.wav"), 2);
  EXPECT_EQ(vcReadSentenceData(nullptr, 0), 0);
  EXPECT_EQ(sentences::State().bookMarkTable.records[0].TimeMs(), 5u);
  ASSERT_EQ(vcOpenSentenceFile("unit1.wav"), 2);
  EXPECT_EQ(vcReadSentenceData(starts.data(), -4), -4);
}

TEST_F(StudyFiles, KeepBookmarksWithoutSentences) {
  SetBookMark(3, 1234);  // behind an empty slot: no bookmark to the host, but stored
  vcWriteExtraFileData("unit1.wav", nullptr, 0);
  EXPECT_EQ(ReadBytes("zud/unit1.zud"), With(Bytes(320), 48, {0xD2, 4}));
  const Starts starts = {0, 400};
  vcWriteExtraFileData("unit1.wav", starts.data(), 2);
  EXPECT_EQ(ReadBytes("zud/unit1.zud").size(), 328u);
}

TEST_F(StudyFiles, AreReplacedWholeOrNotAtAll) {
  const Starts starts = {0, 400};
  WriteBytes("zud/unit1.zud", Sample());
  fs::permissions("zud/unit1.zud", fs::perms::owner_read);
  vcWriteExtraFileData("unit1.wav", starts.data(), 2);
  EXPECT_NE(ReadBytes("zud/unit1.zud"), Sample()) << "a read-only one is made writable first";
  EXPECT_EQ(NamesIn("zud"), (std::vector<std::string>{"unit1.zud"}));

  // A host that still reads the old one goes on reading the old bytes.
  WriteBytes("zud/unit1.zud", Sample());
  ASSERT_EQ(vcOpenSentenceFile("unit1.wav"), 2);
  vcWriteExtraFileData("unit1.wav", Starts{1, 2, 3}.data(), 3);
  Starts read(2);
  vcReadSentenceData(read.data(), 2);
  EXPECT_EQ(read, (Starts{40, 280}));

  fs::remove_all("zud");
  vcWriteExtraFileData("unit1.wav", starts.data(), 2);
  EXPECT_FALSE(Exists("zud")) << "the folder is the host's to make";
  vcWriteExtraFileData(nullptr, starts.data(), 2);
  vcWriteExtraFileData(std::string(300, 'x').c_str(), starts.data(), 2);
}

TEST_F(StudyFiles, HaveMarkIndexFilesBesideThem) {
  const Starts values = {1, 0x01020304, 0xFFFFFFFF};
  vcWriteMarkIdx("marks.idx", values.data(), 3);
  const Bytes expected = {1, 0, 0, 0, 4, 3, 2, 1, 255, 255, 255, 255};
  EXPECT_EQ(ReadBytes("marks.idx"), expected);
  for (const std::int32_t count : {1, 0, -1}) vcWriteMarkIdx("marks.idx", values.data(), count);
  vcWriteMarkIdx("marks.idx", nullptr, 3);
  vcWriteMarkIdx(nullptr, values.data(), 3);
  vcWriteMarkIdx("none\\marks.idx", values.data(), 3);
  EXPECT_EQ(ReadBytes("marks.idx"), expected);
  fs::permissions("marks.idx", fs::perms::owner_read);
  vcWriteMarkIdx("marks.idx", values.data(), 2);
  EXPECT_EQ(ReadBytes("marks.idx"), expected) << "read-only";
}

}  // namespace
}  // namespace tavimo::tests
