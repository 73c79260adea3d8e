// Page settings, page files and layouts, through the exports.
#include <random>

#include "pages/page_settings.h"
#include "pages/script_scrambling.h"
#include "platform/utility.h"
#include "support/script_page.h"

namespace tavimo::tests {
namespace {

class PageLayouts : public ScriptPages {};

TEST_F(PageLayouts, HaveWholePixelsAndAtMostSixtyLines) {
  const int kHeights[][3] = {{16, 0, 16}, {16, 1, 19}, {16, 2, 24}, {16, 3, 16}, {16, -1, 16}, {5, 1, 6}, {0, 2, 0}};
  for (const auto& [height, spacing, expected] : kHeights) EXPECT_EQ(pages::LineHeight(height, spacing), expected);
  for (const auto& [height, lines] : {std::pair{300, 15}, {303, 15}, {304, 16}, {18, 0}, {-300, 0}, {9999, 60}}) {
    EXPECT_EQ(pages::LinesPerPage(height, 19), lines) << height;
  }
  std::int32_t textHeight = 0;
  tvTextExtent(pane.dc, "a", 1, nullptr, &textHeight);
  EXPECT_EQ(vcSetPageSettings(pane.dc, 100, 50, 3, 4, 1), pages::LineHeight(textHeight, 1));
  EXPECT_EQ(vcSetPageSettings(nullptr, 7, 7, 7, 7, 0), 0);
  EXPECT_EQ(pages::State().pageSettings.pageWidth, 100) << "the earlier settings stay";
  EXPECT_EQ(vcCountPage(pane.dc), 1) << "the empty page at load";
  EXPECT_EQ(vcCountPage(nullptr), 0);
}

TEST_F(PageLayouts, APageFileHasTheBoundsOfEachPage) {
  vcSetPageSettings(pane.dc, 300, 42, 0, 0, 0);  // two lines
  Paginate("Hello world.\r\n");
  EXPECT_EQ(ReadBytes("script.pag"), (Bytes{0, 0, 0, 0, 0, 0, 0, 0, 14, 0, 0, 0, 2, 0, 0, 0}));
  EXPECT_TRUE(platform::IsSameTimeFiles("script.txt", "script.pag"));
  EXPECT_EQ(Paginate("a\r\nb\r\nc d\r\n"), (Entries{{0, 0}, {6, 2}, {11, 4}}));
  EXPECT_EQ(Paginate("a\rb\rc\r"), (Entries{{0, 0}, {4, 2}, {6, 3}})) << "pagination takes a CR alone";
  EXPECT_EQ(Show("a\r\n"), 2);
  EXPECT_EQ(Lines(), (std::vector<std::string>{"a", ""}));
  ASSERT_EQ(Show("\"a"), 1);
  vcSetPageSettings(pane.dc, 3, 42, 0, 0, 0);
  EXPECT_EQ(vcCountPage(pane.dc), 0) << "the quote has no byte to take along";
}

TEST_F(PageLayouts, AScrambledScriptHasThePagesOfItsText) {
  vcSetPageSettings(pane.dc, 300, 21, 0, 0, 0);
#ifndef TAVIMO_SCRAMBLE_KEY
  WriteBytes("lesson.nor", {0x13, 0xF4, 0x20, 0x4B, 0xB7, 0x83, 0x19, 0x70, 0xC2, 0x19, 0xF0, 0xC6, 0x37, 0x66});
  EXPECT_EQ(vcGenPageFile(1, "lesson.nor", "lesson.pag", pane.dc), -2);
  EXPECT_EQ(EntriesOf(ReadBytes("lesson.pag")), (Entries{{0, 0}, {14, 2}}));
#endif
  std::string text;
  for (int i = 0; i < 9000; ++i) text += std::to_string(i) + " green bottles\r\n";
  const Entries plain = Paginate(text);
  WriteText("script.nor", text);
  std::string scrambled = text;
  for (std::size_t i = 0; i < text.size(); ++i) scrambled[i] = static_cast<char>(text[i] ^ pages::kScrambleKey[i % 56]);
  EXPECT_EQ(Paginate(scrambled, -1), plain);
  ASSERT_EQ(vcOpenScript("script.txt", "script.pag", "script.mrk", nullptr), 9000);
  EXPECT_EQ(vcReadPage(1, 4711), 3 * 4711);
  EXPECT_EQ(PageText(), "4711 green bottles\r\n") << "unscrambled from the key's place at its own offset";
}

TEST_F(PageLayouts, EveryScriptHasAnEnd) {
  const struct {
    const char* what;
    std::string text;
    int width, height;
    Entries entries;  // the last two alone where there are more
  } kCases[] = {
      {"nothing", "", 300, 100, {{0, 0}}},
      {"a zero byte", std::string("ab\0cd", 5), 300, 100, {{0, 0}, {2, 1}}},
      {"a page narrower than a character", u8"好 a"_gbk, 3, 100, {{0, 0}}},
      {"a character too wide for a page that has begun", u8"  好"_gbk, 8, 100, {{0, 0}, {2, 0}}},
      {"a quote that has no byte to take along", "ab \"", 3, 21, {{0, 0}}},
      {"a page lower than a line", "abc", 300, 19, {{0, 0}}},
      {"negative sizes", "abc", -300, -100, {{0, 0}}},
      {"a page of too many bytes", std::string(6000, 'a'), 99999999, 100, {{0, 0}, {4988, 1}}},
      {"a marker cut by the page's end", "@@b", 1, 21, {{0, 0}, {1, 0}}},
      {"10 MB without a line end",
       std::string(10'000'000, 'i'),
       100,
       42,
       {{9'999'984, 208'333}, {10'000'000, 208'334}}},
      {"10 MB of high bytes", std::string(10'000'000, '\xD6'), 100, 42, {{9'999'984, 0}, {10'000'000, 0}}},
  };
  for (const auto& testCase : kCases) {
    SCOPED_TRACE(testCase.what);
    vcSetPageSettings(pane.dc, testCase.width, testCase.height, 0, 0, 0);
    Entries entries = Paginate(testCase.text);
    if (entries.size() > 2) entries.erase(entries.begin(), entries.end() - 2);
    EXPECT_EQ(entries, testCase.entries);
  }
}

TEST_F(PageLayouts, AFailureLeavesTheEarlierPageFile) {
  vcSetPageSettings(pane.dc, 300, 42, 0, 0, 0);
  Paginate("one two");
  const Bytes before = ReadBytes("script.pag");
  EXPECT_EQ(vcGenPageFile(0, "missing.txt", "script.pag", pane.dc), -1);
  EXPECT_EQ(vcGenPageFile(0, nullptr, nullptr, pane.dc), -1);
  EXPECT_EQ(vcGenPageFile(0, "script.txt", "script.pag", nullptr), -1);
  EXPECT_EQ(vcGenPageFile(0, "script.txt", "no such folder\\script.pag", pane.dc), -1);
  EXPECT_EQ(vcGenPageFile(0, "script.txt", "SCRIPT.TXT", pane.dc), -1) << "the script itself";
  EXPECT_EQ(ReadBytes("script.pag"), before);
  EXPECT_EQ(ReadBytes("script.txt").size(), 7u);
}

// English and Chinese paragraphs; line breaks may then part neither a character nor a CR LF.
std::string RandomScript(std::mt19937& random) {
  std::string text;
  const int paragraphs = static_cast<int>(random() % 30);
  for (int i = 0; i < paragraphs; ++i) {
    if (random() % 3 == 0) text += "@@";
    for (auto pieces = random() % 120; pieces > 0; --pieces) {
      if (random() % 2 == 0) {
        text += static_cast<char>(0xB0 + random() % 0x40);
        text += static_cast<char>(0xA1 + random() % 0x5E);
      } else {
        text += std::string(random() % 12, static_cast<char>('a' + random() % 26)) + " ,.'-"[random() % 5];
      }
    }
    text += "\r\n";
  }
  return text;
}

bool IsWordByte(char byte) { return std::isalnum(static_cast<unsigned char>(byte)) != 0; }

std::size_t CountRuns(const std::string& text) {
  std::size_t words = 0;
  for (std::size_t i = 0; i < text.size(); ++i) words += IsWordByte(text[i]) && (i == 0 || !IsWordByte(text[i - 1]));
  return words;
}

// An even run of high bytes before each place: no character is cut there.
bool IsBetweenCharacters(const std::string& text, std::size_t place) {
  std::size_t run = 0;
  while (run < place && static_cast<unsigned char>(text[place - run - 1]) >= 0x80) ++run;
  return run % 2 == 0;
}

TEST_F(PageLayouts, AgreeWithThePageFileForAnyTextAndFont) {
  std::mt19937 random(11);
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE(round);
    SelectFontHeight(static_cast<int>(8 + random() % 30));
    vcSetPageSettings(pane.dc, static_cast<int>(80 + random() % 700), static_cast<int>(50 + random() % 900), 5, 5,
                      static_cast<int>(random() % 3));
    const std::string text = RandomScript(random);
    const Entries entries = Paginate(text);
    ASSERT_EQ(entries.back().first, text.size());
    const auto pageCount = static_cast<std::int32_t>(entries.size() - 1);
    ASSERT_EQ(vcOpenScript("script.txt", "script.pag", "script.mrk", nullptr), pageCount);
    for (std::int32_t page = 0; page < pageCount; ++page) {
      const auto& [begin, firstWord] = entries[static_cast<std::size_t>(page)];
      const auto& [end, nextWord] = entries[static_cast<std::size_t>(page) + 1];
      ASSERT_LT(begin, end);
      const std::string expected = text.substr(begin, end - begin);
      ASSERT_EQ(nextWord - firstWord, CountRuns(expected));
      ASSERT_TRUE(IsBetweenCharacters(text, end));
      ASSERT_EQ(vcReadPage(0, page), static_cast<std::int32_t>(firstWord));
      ASSERT_LE(vcCountPage(pane.dc), pages::State().pageSettings.linesPerPage);
      ASSERT_EQ(PageText(), expected);
      std::size_t shown = 0;
      for (const std::string& line : Lines()) {
        ASSERT_EQ(expected.compare(shown, line.size(), line), 0);
        shown += line.size();
        ASSERT_TRUE(IsBetweenCharacters(expected, shown));
        if (expected.compare(shown, 2, "\r\n") == 0) shown += 2;
      }
      ASSERT_EQ(shown, expected.size()) << "every byte of the page stands on a line";
    }
  }
}

}  // namespace
}  // namespace tavimo::tests
