// Clicks on a page and the marks they leave.
#include <optional>

#include "platform/file_faults.h"
#include "platform/utility.h"
#include "support/script_page.h"
#include "support/system.h"

namespace tavimo::tests {
namespace {

class WordSelection : public ScriptPages {
 protected:
  static constexpr int kLeft = 10;
  static constexpr int kTop = 5;
  // Fonts differ by a row from system to system.
  [[nodiscard]] int LineHeight() const {
    std::int32_t height = 0;
    tvTextExtent(pane.dc, "a", 1, nullptr, &height);
    return height;
  }

  void SetUp() override {
    ScriptPages::SetUp();
    ASSERT_EQ(vcSetPageSettings(pane.dc, 300, 105, kLeft, kTop, 0), LineHeight());
  }

  // "word=state", or "" when nothing was selected.
  std::string Click(int x, int y) {
    char word[161] = "unchanged";
    std::int32_t state = 7;
    const std::int32_t length = vcBeginSelect(pane.dc, x, y, &state, word);
    EXPECT_EQ(length, length == 0 ? 0 : static_cast<std::int32_t>(std::string(word).size()));
    EXPECT_EQ(length == 0, std::string(word) == "unchanged" && state == 7);
    return length == 0 ? "" : word + ("=" + std::to_string(state));
  }

  // A click on the first pixel behind a text that begins the page.
  std::string ClickBehind(const std::string& text) { return Click(kLeft + WidthOf(text), kTop); }
};

TEST_F(WordSelection, TogglesTheLastWordThatBeginsAtOrLeftOfTheClick) {
  const std::string line = "Don't stop well-known ends";
  ASSERT_EQ(Show(line), 1);
  EXPECT_EQ(ClickBehind("Don"), "") << "the apostrophe";
  EXPECT_EQ(ClickBehind("Don'"), "t=1");
  EXPECT_EQ(ClickBehind("Don't stop well"), "well=1") << "the hyphen";
  EXPECT_EQ(Click(kLeft + 300, kTop), "ends=1") << "the last pixel";
  for (const auto& [x, y] : {std::pair{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MAX, kTop}, {kLeft, INT_MAX}}) {
    EXPECT_EQ(Click(x, y), "");
  }
  EXPECT_EQ(ReadBytes("script.mrk"), (Bytes{0x11, 0x10}));
}

// The word of a line a click selects, by the text alone.
std::optional<std::size_t> WordUnder(const std::string& line, const std::int32_t* widths, int x) {
  std::optional<std::size_t> word;
  std::size_t words = 0;
  int end = 0;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const auto byte = static_cast<unsigned char>(line[at]);
    const bool isWordByte = std::isalnum(byte) != 0;
    if (isWordByte && (at == 0 || std::isalnum(static_cast<unsigned char>(line[at - 1])) == 0)) {
      if (end <= x) word = words;
      ++words;
    }
    end += widths[byte];
    if (end > x) return std::isalpha(byte) != 0 || byte == '-' ? word : std::nullopt;
  }
  return word;
}

TEST_F(WordSelection, AnswersOnEveryPixelAndKeepsEachMarkAtOnce) {
  const std::string lines[] = {"-Up, well-known 7 ", "", u8"中a文 B2 - c"_gbk, u8"  好"_gbk};
  const std::size_t firstWords[] = {0, 4, 4, 7};
  ASSERT_EQ(Show(lines[0] + "\r\n\r\n" + lines[2] + "\r\n" + lines[3]), 4);
  Bytes expected(3, 0);
  for (int y = 0; y < 105; ++y) {
    const int first = y % Stride();  // by strides it is another column in every row
    for (int x = first; x < 320; x += Stride()) {
      const int line = (y - kTop) / LineHeight();
      const bool isInside = x >= kLeft && x <= kLeft + 300 && y >= kTop && line < 4;
      const auto word = isInside ? WordUnder(lines[line], widths, x - kLeft) : std::nullopt;
      if (word) {
        const std::size_t number = firstWords[line] + *word;
        expected[number / 4] ^= static_cast<std::uint8_t>(0x40 >> 2 * (number % 4));
      }
      ASSERT_EQ(Click(x, y).empty(), !word) << x << ',' << y;
      if (!word && x != first) continue;
      ASSERT_EQ(ReadBytes("script.mrk"), expected) << x << ',' << y;
    }
  }
}

TEST_F(WordSelection, MarksOutliveTheProgram) {
  ASSERT_EQ(Show("one two"), 1);
  EXPECT_EQ(ClickBehind("one "), "two=1");
  EXPECT_TRUE(platform::IsSameTimeFiles("script.txt", "script.mrk")) << "with another time the marks would be stale";
  EXPECT_EQ(ReadBytes("script.mrk"), (Bytes{0x10}));
  ResetEveryRoom();
  vcSetPageSettings(pane.dc, 300, 105, kLeft, kTop, 0);
  ASSERT_EQ(vcOpenScript("script.txt", "script.pag", "script.mrk", nullptr), 1);
  ASSERT_EQ(vcReadPage(0, 0), 0);
  EXPECT_EQ(ClickBehind("one "), "") << "not laid out";
  ASSERT_EQ(vcCountPage(pane.dc), 1);
  EXPECT_EQ(ClickBehind("one "), "two=0");

  // A script that was edited meanwhile still counts as changed.
  SetWriteTime("script.txt", WriteTimeOf("script.pag") + 1);
  EXPECT_EQ(ClickBehind("one "), "two=1");
  EXPECT_FALSE(platform::IsSameTimeFiles("script.txt", "script.mrk"));
}

TEST_F(WordSelection, MarksOutliveAProgramThatIsKilledWhileItSavesThem) {
  ASSERT_EQ(Show("one two"), 1);
  EXPECT_EQ(ClickBehind("one "), "two=1");
  EXPECT_FALSE(Exists("script.mrk~")) << "the note is gone with the click";
  vcCloseScript();
  const Bytes marks = ReadBytes("script.mrk");
  const std::int64_t time = WriteTimeOf("script.txt");
  struct Case {
    std::int64_t noted;
    int noteBytes;
    bool isKept;
  };
  for (const Case& c : {Case{time, 8, true}, Case{time + 10'000, 8, false}, Case{time, 7, false}}) {
    Bytes note;
    AppendLittleEndian(note, static_cast<std::uint64_t>(c.noted), c.noteBytes);
    WriteBytes("script.mrk~", note);
    WriteBytes("script.mrk", marks);
    SetWriteTime("script.mrk", time + 10'000'000);
    ASSERT_EQ(vcOpenScript("script.txt", "script.pag", "script.mrk", nullptr), 1);
    vcCloseScript();
    EXPECT_EQ(ReadBytes("script.mrk"), c.isKept ? marks : Bytes(marks.size())) << c.noteBytes;
    EXPECT_EQ(WriteTimeOf("script.mrk"), time);
    EXPECT_FALSE(Exists("script.mrk~"));
  }
}

TEST_F(WordSelection, AMarkThatCannotBeKeptIsNotMade) {
  ASSERT_EQ(Show("one two"), 1);
  EXPECT_EQ(ClickBehind("one "), "two=1");
  {
    const auto plan = platform::FaultPlan::FailAt(1, platform::FileFault::Fails, platform::FaultExtent::AllFromThere);
    EXPECT_EQ(ClickBehind(""), "");
  }
  EXPECT_EQ(pages::State().pageLayout.words[0].state, 0);
  vcCountPage(pane.dc);
  EXPECT_EQ(ClickBehind(""), "one=1");
  vcCloseScript();
  EXPECT_EQ(ClickBehind(""), "");
  EXPECT_EQ(ReadBytes("script.mrk"), (Bytes{0x50}));
}

TEST_F(WordSelection, NeverWritesPastAWordOrAPage) {
  vcSetPageSettings(pane.dc, 4000, 105, kLeft, kTop, 0);
  const std::string longWord(300, 'i');
  ASSERT_EQ(Show(longWord + " a b c d e f g"), 1);
  char word[162];
  std::fill(std::begin(word), std::end(word), '?');
  EXPECT_EQ(vcBeginSelect(pane.dc, kLeft, kTop, nullptr, word), 300);
  EXPECT_EQ(std::string(word, 162), longWord.substr(0, 160) + '\0' + '?');
  EXPECT_EQ(vcBeginSelect(pane.dc, kLeft, kTop, nullptr, nullptr), 300);
  WriteText("script.mrk", "");  // cut short while it is open
  EXPECT_EQ(ClickBehind(longWord + " a b c d e "), "f=1");
  EXPECT_EQ(ReadBytes("script.mrk"), (Bytes{0, 0x04})) << "the file grows rather than lose a mark";

  // Lines that cut words count them twice: what passes the states that were read is marked on the page alone.
  vcSetPageSettings(pane.dc, 40, 105, kLeft, kTop, 0);
  ASSERT_EQ(Show("oneverylongwordandnothingelse"), 5);
  EXPECT_EQ(Click(kLeft, kTop + 4 * LineHeight()), Lines()[4] + "=1");
  EXPECT_EQ(ReadBytes("script.mrk"), Bytes{0});
}

}  // namespace
}  // namespace tavimo::tests
