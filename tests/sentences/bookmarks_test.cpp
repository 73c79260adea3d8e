// Editing bookmarks, through the exports.

#include "sentences/bookmarks.h"
#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

class BookMarks : public EngineTest {
 protected:
  static std::vector<std::uint32_t> Times() {
    std::vector<std::uint32_t> times;
    for (std::int32_t i = 0; i < vcGetTotalBookMarks(); ++i)
      times.push_back(static_cast<std::uint32_t>(vcGetBookMarkTime(i)));
    return times;
  }

  static std::string Label(std::size_t slot) {
    return reinterpret_cast<const char*>(sentences::State().bookMarkTable.records[slot].bytes.data() + 4);
  }
};

TEST_F(BookMarks, AreListedInTheOrderOfAdding) {
  EXPECT_EQ(vcAddBookMark(5000, "A"), 0);
  EXPECT_EQ(vcAddBookMark(125500, "C"), 0);
  EXPECT_EQ(vcAddBookMark(65000, u8"中文"_gbk), 0);
  EXPECT_EQ(vcAddBookMark(6000000, nullptr), 0);
  const Window list(TV_LIST_BOX);
  EXPECT_EQ(vcFillBookMarkList(list, 7000000), 4);
  EXPECT_EQ(LinesOf(list),
            (std::vector<std::string>{"00:05   A", "02:05   C", std::string("01:05   ") + u8"中文"_gbk, "100:00   "}));
  EXPECT_EQ(vcFillBookMarkList(list, 7000000), 4) << "emptying the list box is the host's";
  EXPECT_EQ(LinesOf(list).size(), 8u);
  EXPECT_EQ(vcFillBookMarkList(nullptr, 7000000), 4);
}

TEST_F(BookMarks, AreAllDroppedWhenOneLiesPastTheEnd) {
  for (const std::uint32_t time : {5000u, 125500u, 65000u}) vcAddBookMark(time, "A");
  const Window list(TV_LIST_BOX);
  EXPECT_EQ(vcFillBookMarkList(list, 125501), 3);
  EXPECT_EQ(vcFillBookMarkList(list, 125500), 0);
  EXPECT_EQ(LinesOf(list).size(), 3u);
  EXPECT_EQ(vcGetTotalBookMarks(), 0);
}

TEST_F(BookMarks, CompareHugeTimesSignedAndShowThemUnsigned) {
  vcAddBookMark(0xFFFFFFFF, "z");
  const Window list(TV_LIST_BOX);
  EXPECT_EQ(vcFillBookMarkList(list, 1000), 1);
  EXPECT_EQ(LinesOf(list), (std::vector<std::string>{"71582:47   z"}));
}

TEST_F(BookMarks, AreTwentyAtMost) {
  EXPECT_EQ(vcAddBookMark(0, "nowhere"), 0) << "a time of 0 leaves the slot empty";
  EXPECT_EQ(vcGetTotalBookMarks(), 0);
  for (std::uint32_t i = 1; i <= 20; ++i) EXPECT_EQ(vcAddBookMark(i, "x"), 0);
  EXPECT_EQ(vcAddBookMark(21, "x"), -1);
  EXPECT_EQ(vcGetTotalBookMarks(), 20);
  EXPECT_EQ(vcGetBookMarkTime(19), 20);
  for (const std::int32_t index : {19, -1}) vcDeleteBookMark(index);
  EXPECT_EQ(vcGetTotalBookMarks(), 19);
  vcDeleteAllBookMark();
  EXPECT_EQ(vcGetTotalBookMarks(), 0);
}

TEST_F(BookMarks, CloseTheGapWhenOneIsDeleted) {
  for (const std::uint32_t time : {10u, 20u, 30u}) vcAddBookMark(time, std::to_string(time).c_str());
  vcDeleteBookMark(0);
  EXPECT_EQ(Label(0), "20");
  // A slot behind the list that still holds a time comes back when the list reaches it.
  core::WriteU32(sentences::State().bookMarkTable.records[3].bytes.data(), 40);
  vcDeleteBookMark(2);
  EXPECT_EQ(Times(), (std::vector<std::uint32_t>{20, 30, 40}));
  vcDeleteBookMark(1000);
  EXPECT_EQ(Times(), (std::vector<std::uint32_t>{20, 30, 40})) << "the last slot alone";
}

TEST_F(BookMarks, CutLabelsBetweenCharacters) {
  vcAddBookMark(1, "12345678901234");
  vcAddBookMark(2, u8"一二三四五六七"_gbk);
  vcAddBookMark(3, "12345678901");
  EXPECT_EQ(Label(0), "12345678901");
  EXPECT_EQ(Label(1), u8"一二三四五"_gbk) << "ten bytes: half a character does not fit";
  EXPECT_EQ(Label(2), "12345678901");
  // A damaged study file may hold a label without its zero.
  for (std::size_t i = 4; i < 16; ++i) sentences::State().bookMarkTable.records[0].bytes[i] = 'y';
  const Window list(TV_LIST_BOX);
  vcFillBookMarkList(list, 1000);
  EXPECT_EQ(LinesOf(list)[0], "00:00   yyyyyyyyyyyy");
}

TEST_F(BookMarks, AnswerZeroOutsideTheTable) {
  for (const std::int32_t index : {-1, 20, 2147483647, -2147483647 - 1}) EXPECT_EQ(vcGetBookMarkTime(index), 0);
  core::WriteU32(sentences::State().bookMarkTable.records[7].bytes.data(), 99);
  EXPECT_EQ(vcGetBookMarkTime(7), 99) << "also behind the list";
}

}  // namespace
}  // namespace tavimo::tests
