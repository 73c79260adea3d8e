// Scripts opened, read page by page and drawn, and the life of their highlight files.

#include "pages/page_highlights.h"
#include "platform/drawing.h"
#include "platform/files.h"
#include "platform/utility.h"
#include "support/script_page.h"

namespace tavimo::tests {
namespace {

class PageDisplay : public ScriptPages {
 protected:
  void SetUp() override {
    ScriptPages::SetUp();
    vcSetPageSettings(pane.dc, 300, 105, 10, 5, 0);
  }

  std::int32_t Open(const char* script = "script.txt", const char* marks = "script.mrk") {
    return vcOpenScript(script, "script.pag", marks, &slots);
  }

  static Bytes EntryBytes(const Entries& entries) {
    Bytes bytes;
    for (const auto& [offset, word] : entries) {
      AppendLittleEndian(bytes, offset, 4);
      AppendLittleEndian(bytes, word, 4);
    }
    return bytes;
  }

  // Gives marks to the first words; the file's time stays.
  static void WriteMarks(const Bytes& bytes) {
    WriteBytes("script.mrk", bytes);
    platform::SetSameFileTime("script.txt", "script.mrk");
  }

  std::int32_t slots = -1;
};

TEST_F(PageDisplay, AHighlightFileHasTwoBitsForEachWordOfTheScript) {
  const struct {
    const char* name;
    std::string text;
    std::size_t bytes;
  } kCases[] = {
      {"a.txt", "1 2 3 4 5 6 7 8 9 ten\r\n", 3},
      {"a.txt", "1 2 3 4 5 6 7 8 9 ten", 3},
      {"a.txt", "", 1},
      {"a.txt", std::string(140000, 'a') + " b. ", 1},
#ifndef TAVIMO_SCRAMBLE_KEY
      {"a.NOR", "\x3A\xB1\x2D\x07\xBB\x83\x0A\x3F\xB5", 2},  // "a a a a a"
#endif
  };
  Paginate("");
  for (const auto& testCase : kCases) {
    SCOPED_TRACE(std::string(testCase.name) + ' ' + testCase.text.substr(0, 30));
    WriteText(testCase.name, testCase.text);
    const std::string marks = std::to_string(&testCase - kCases) + ".mrk";  // the one before is still open
    EXPECT_EQ(Open(testCase.name, marks.c_str()), 0);
    EXPECT_EQ(ReadBytes(marks), Bytes(testCase.bytes, 0));
    EXPECT_EQ(slots, static_cast<std::int32_t>(testCase.bytes) * 4);
    EXPECT_TRUE(platform::IsSameTimeFiles(testCase.name, marks.c_str()));
  }
}

TEST_F(PageDisplay, MarksBelongToOneVersionOfTheScript) {
  Paginate("one two three four five\r\n");
  EXPECT_EQ(Open(), 1);
  WriteMarks({0x40, 0x40});
  fs::permissions("script.mrk", fs::perms::owner_read);
  EXPECT_EQ(Open(), 1) << "read-only";
  EXPECT_EQ(ReadBytes("script.mrk"), (Bytes{0x40, 0x40}));

  fs::permissions("script.mrk", fs::perms::owner_read);
  SetWriteTime("script.txt", WriteTimeOf("script.txt") + 1);
  EXPECT_EQ(Open(), 1) << "stale and read-only";
  EXPECT_EQ(ReadBytes("script.mrk"), (Bytes{0, 0}));
}

TEST_F(PageDisplay, APageComesWithTheStatesOfItsWords) {
  WriteText("script.txt", "a b c d e f g h.");
  WriteBytes("script.pag", EntryBytes({{0, 6}, {16, 14}}));
  WriteMarks({0xFF, 0x01, 0x6C, 0x40, 0xFF});  // words 7 (1), 8 (1), 9 (2), 10 (3), 12 (1)
  EXPECT_EQ(Open(), 1);
  EXPECT_EQ(vcReadPage(0, 0), 6);
  EXPECT_EQ(pages::State().page.highlights.Bytes().size(), 3u);
  vcCountPage(pane.dc);
  std::string states;
  for (std::size_t i = 0; i < 8; ++i) states += std::to_string(pages::State().pageLayout.words[i].state);
  EXPECT_EQ(states, "01123010");
  VcPageIndexEntry entries[3] = {};
  EXPECT_EQ(vcReadBookPageIdx(3, entries), 2);
  EXPECT_EQ(entries[1].text_offset, 16u);
  EXPECT_EQ(entries[1].first_word, 14u);
  EXPECT_EQ(vcReadBookPageIdx(1, entries), 1);
  EXPECT_EQ(vcReadBookPageIdx(-1, entries), 0);
}

TEST_F(PageDisplay, RefusesWhatCannotBeAPage) {
  ASSERT_EQ(Show("one two"), 1);
  for (const std::int32_t page : {1, -1, INT32_MAX}) EXPECT_EQ(vcReadPage(0, page), -1);
  const std::pair<const char*, Entries> kCases[] = {
      {"offsets decrease", {{4, 0}, {3, 2}}},
      {"word numbers decrease", {{0, 3}, {7, 2}}},
      {"too many bytes", {{0, 0}, {4989, 2}}},
      {"too many words", {{0, 0}, {4988, 2495}}},
      {"a word number no script has", {{0, 0x7FFFFFFF}, {7, 0x7FFFFFFF}}},
      {"numbers past 31 bits", {{0xFFFFFFF0, 0xFFFFFFF0}, {0xFFFFFFFF, 0xFFFFFFFF}}},
  };
  for (const auto& [what, entries] : kCases) {
    SCOPED_TRACE(what);
    WriteBytes("script.pag", EntryBytes(entries));
    EXPECT_EQ(vcReadPage(0, 0), -1);
    EXPECT_EQ(PageText(), "one two") << "the current page stays";
    EXPECT_EQ(vcDisplayPage(pane.dc), 1);
  }
  WriteBytes("script.pag", EntryBytes({{4, 1}, {4992, 2}}));
  EXPECT_EQ(vcReadPage(0, 0), 1);
  EXPECT_EQ(PageText(), "two") << "as much as the script has";
  EXPECT_EQ(vcDisplayPage(pane.dc), 0) << "not laid out yet";
}

TEST_F(PageDisplay, OpensAllThreeFilesOrRefuses) {
  Paginate("one two");
  EXPECT_EQ(Open("missing.txt"), -1);
  EXPECT_FALSE(Exists("script.mrk"));
  EXPECT_EQ(Open("script.txt", "no such folder\\script.mrk"), -1);
  EXPECT_EQ(Open("script.txt", "SCRIPT.txt"), -1) << "marks would be written into the script";
  EXPECT_EQ(Open("script.txt", "script.pag"), -1);
  EXPECT_EQ(Open(), 1);
  WriteText("script.pag", "damaged");
  EXPECT_EQ(Open(), -1);
  vcCloseScript();
  vcCloseScript();
  EXPECT_EQ(vcReadPage(0, 0), -1);
  EXPECT_EQ(vcReadBookPageIdx(1, nullptr), -1);
  EXPECT_EQ(vcDisplayPage(pane.dc), 0);
  EXPECT_EQ(ReadBytes("script.txt").size(), 7u);
}

TEST_F(PageDisplay, DrawsEachCharacterAtItsAdvanceAndMarkedWordsOverBlackOnes) {
  const std::string lines[] = {"@@Start, end-game", u8"中文 and 汉字."_gbk};
  // The letters of one font are a row higher on one system than on another.
  const std::int32_t lineHeight = vcSetPageSettings(pane.dc, 300, 105, 10, 5, 0);
  ASSERT_EQ(Show(lines[0] + "\r\n" + lines[1]), 2);
  Picture expected(pane.width, pane.height);
  tvSelectFont(expected.dc, "WenQuanYi Zen Hei", 16);
  const std::int32_t kNoAdvance[2] = {};
  for (int i = 0; i < 2; ++i) {
    int x = 10;
    for (std::size_t at = 0; at < lines[i].size();) {
      const std::size_t byteCount = static_cast<unsigned char>(lines[i][at]) >= 0x80 ? 2 : 1;
      const std::string character = lines[i].substr(at, byteCount);
      if (character != "@") platform::PaintText(expected.dc, x, 5 + lineHeight * i, character, {kNoAdvance, byteCount});
      x += WidthOf(character);
      at += byteCount;
    }
  }
  EXPECT_EQ(vcDisplayPage(pane.dc), 2);
  EXPECT_EQ(pane.Rows(), expected.Rows());
  EXPECT_EQ(PageText().substr(0, 7), "  Start");

  WriteMarks({0x60});  // "Start", and "end" with a state that clicks never give
  ASSERT_EQ(vcReadPage(0, 0), 0);
  vcCountPage(pane.dc);
  for (int i = 0; i < 2; ++i) EXPECT_EQ(vcDisplayPage(pane.dc), 2);
  const int start = 10 + WidthOf("@@");
  const int wordEnds[] = {start + WidthOf("Start"), start + WidthOf("Start, "), start + WidthOf("Start, end")};
  int redPixels = 0;
  for (int y = 0; y < pane.height; ++y) {
    for (int x = 0; x < pane.width; ++x) {
      const bool isMarked = y < 5 + lineHeight && (x < wordEnds[0] || (x >= wordEnds[1] && x < wordEnds[2]));
      const std::uint32_t black = tvPixel(expected.dc, x, y);
      ASSERT_EQ(tvPixel(pane.dc, x, y), isMarked && black == kBlack ? kRed : black) << x << ',' << y;
      redPixels += tvPixel(pane.dc, x, y) == kRed ? 1 : 0;
    }
  }
  EXPECT_GT(redPixels, 50);
}

}  // namespace
}  // namespace tavimo::tests
