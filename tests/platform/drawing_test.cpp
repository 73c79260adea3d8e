// Lines, fills and text measures of the host kit, pixel by pixel against pictures written out here. Picture files are
// linux/png_test.cpp.
#include "platform/drawing.h"

#include <algorithm>
#include <cstring>
#include <sstream>

#include "support/engine_test.h"
#include "support/picture.h"

namespace tavimo::tests {
namespace {

// As far as every system's own drawing reaches; linux/lines_test.cpp goes on to the end of the numbers.
constexpr std::int32_t kFarLeft = -1'000'000;
constexpr std::int32_t kFarRight = 1'000'000;

struct Dc : Picture {
  using Picture::Picture;
  operator VcDc() const { return dc; }
};

using Rows = std::vector<std::string>;
Rows RowsOf(const Dc& dc, int left = 0, int top = 0) { return dc.Rows(left, top); }

struct Line {
  std::int32_t x1, y1, x2, y2;
};

std::ostream& operator<<(std::ostream& out, const Line& line) {
  return out << '(' << line.x1 << ',' << line.y1 << ")->(" << line.x2 << ',' << line.y2 << ')';
}

TEST(DrawingTest, PaintsALineFromItsFirstPixelUpToButNotIncludingItsLast) {
  const struct {
    Line line;
    Rows rows;
  } kCases[] = {
      {{1, 1, 5, 1}, {".......", ".####..", ".......", ".......", ".......", "......."}},
      {{5, 1, 1, 1}, {".......", "..####.", ".......", ".......", ".......", "......."}},
      {{1, 1, 1, 5}, {".......", ".#.....", ".#.....", ".#.....", ".#.....", "......."}},
      {{3, 3, 3, 3}, {".......", ".......", ".......", ".......", ".......", "......."}},
      {{1, 1, 5, 5}, {".......", ".#.....", "..#....", "...#...", "....#..", "......."}},
      {{1, 5, 5, 1}, {".......", ".......", "....#..", "...#...", "..#....", ".#....."}},
      // The exact line passes half way between two pixels: the smaller coordinate, whichever way it is drawn.
      {{0, 1, 6, 4}, {".......", "##.....", "..##...", "....##.", ".......", "......."}},
      {{6, 4, 0, 1}, {".......", ".#.....", "..##...", "....##.", "......#", "......."}},
      {{6, 1, 0, 4}, {".......", ".....##", "...##..", ".##....", ".......", "......."}},
      {{1, 0, 3, 4}, {".#.....", ".#.....", "..#....", "..#....", ".......", "......."}},
      {{3, 4, 1, 0}, {".......", ".#.....", "..#....", "..#....", "...#...", "......."}},
      {{1, 4, 3, 0}, {".......", "..#....", "..#....", ".#.....", ".#.....", "......."}},
      // No half: the nearest pixel.
      {{0, 0, 6, 2}, {"##.....", "..###..", ".....#.", ".......", ".......", "......."}},
  };
  for (const auto& testCase : kCases) {
    SCOPED_TRACE(::testing::PrintToString(testCase.line));
    const Dc dc(7, 6);
    platform::DrawLine(dc, testCase.line.x1, testCase.line.y1, testCase.line.x2, testCase.line.y2);
    EXPECT_EQ(RowsOf(dc), testCase.rows);
  }
}

TEST(DrawingTest, CostsNothingForALineOfAnyLength) {
  const struct {
    Line line;
    Rows rows;
  } kCases[] = {
      {{kFarLeft, 1, kFarRight, 1}, {"....", "####", "....", "...."}},
      {{kFarRight, 1, kFarLeft, 1}, {"....", "####", "....", "...."}},
      {{2, kFarLeft, 2, kFarRight}, {"..#.", "..#.", "..#.", "..#."}},
      {{kFarLeft, kFarLeft, kFarRight, kFarRight}, {"#...", ".#..", "..#.", "...#"}},
      {{kFarRight, kFarRight, kFarLeft, kFarLeft}, {"#...", ".#..", "..#.", "...#"}},
      {{kFarLeft, 1, kFarRight, 5}, {"....", "....", "....", "####"}},
      {{kFarRight, 0, kFarRight, 3}, {"....", "....", "....", "...."}},
      {{0, 0, kFarRight, kFarLeft}, {"#...", "....", "....", "...."}},
  };
  for (const auto& testCase : kCases) {
    SCOPED_TRACE(::testing::PrintToString(testCase.line));
    const Dc dc(4, 4);
    for (int i = 0; i < 1000; ++i) {
      platform::DrawLine(dc, testCase.line.x1, testCase.line.y1, testCase.line.x2, testCase.line.y2);
    }
    EXPECT_EQ(RowsOf(dc), testCase.rows);
  }
}

TEST(DrawingTest, FillsWhatLiesInThePicture) {
  const struct {
    int x, y, width, height;
    Rows rows;
  } kCases[] = {
      {1, 1, 2, 1, {"....", ".rr.", "...."}},
      {-5, -5, 7, 6, {"rr..", "....", "...."}},
      {3, 2, INT_MAX, INT_MAX, {"....", "....", "...r"}},
      {INT_MAX, 0, INT_MAX, 3, {"....", "....", "...."}},
      {2, 2, 1, INT_MIN, {"....", "....", "...."}},
  };
  for (const auto& testCase : kCases) {
    SCOPED_TRACE(::testing::PrintToString(testCase.rows));
    const Dc dc(4, 3);
    tvFill(dc, testCase.x, testCase.y, testCase.width, testCase.height, kRed);
    EXPECT_EQ(RowsOf(dc), testCase.rows);
  }
}

TEST(DrawingTest, MakesPicturesOfAnAllowedSize) {
  for (const auto& [width, height] : {std::pair{0, 1}, {1, 0}, {-1, 5}, {32768, 1}, {1, 32768}, {INT_MIN, INT_MAX}}) {
    EXPECT_EQ(tvCreateDc(width, height), nullptr) << width << 'x' << height;
  }
  const Dc wide(32767, 1);
  tvFill(wide, 32766, 0, 1, 1, kRed);
  EXPECT_EQ(tvPixel(wide, 32766, 0), kRed);
  for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {32767, 0}, {0, 1}, {INT_MIN, INT_MIN}}) {
    EXPECT_EQ(tvPixel(wide, x, y), 0xFFFFFFFFu);
  }
}

TEST(DrawingTest, RefusesEveryHandleThatIsNoContext) {
  VcDc destroyed = tvCreateDc(4, 4);
  tvDestroyDc(destroyed);
  const Dc inTheSameSlot(4, 4);
  const Window window;
  for (const VcDc dc : {VcDc{}, destroyed, reinterpret_cast<VcDc>(window.handle), reinterpret_cast<VcDc>(0xDEADBEEF)}) {
    const platform::RedPen red(dc);
    platform::DrawLine(dc, 0, 0, 4, 4);
    tvSelectPen(dc, kRed);
    tvSetTextColour(dc, kRed);
    tvFill(dc, 0, 0, 4, 4, kRed);
    std::int32_t widths[256] = {};
    platform::ByteAdvances advances;
    const platform::RedText redText(dc);
    platform::PaintText(dc, 0, 0, "a", widths);
    EXPECT_FALSE(platform::MeasureBytes(dc, advances));
    EXPECT_EQ(tvPixel(dc, 0, 0), 0xFFFFFFFFu);
    EXPECT_EQ(tvSelectFont(dc, "sans-serif", 16), -1);
    EXPECT_EQ(tvCharWidths(dc, widths), -1);
    EXPECT_EQ(tvTextExtent(dc, "a", 1, widths, widths), -1);
    EXPECT_EQ(tvSavePng(dc, "never.png"), -1);
    tvDestroyDc(dc);
  }
  EXPECT_EQ(RowsOf(inTheSameSlot), Rows(4, "...."));
}

class TextMeasureTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (tvSelectFont(dc, "WenQuanYi Zen Hei", 16) != 0) GTEST_SKIP() << "the font WenQuanYi Zen Hei is not installed";
  }

  // "width x height", the height of a line as "H", or "-1". Fonts differ by a row from system to system.
  std::string Extent(const std::string& gbk) {
    std::int32_t width = -7;
    std::int32_t height = -7;
    if (tvTextExtent(dc, gbk.data(), static_cast<int>(gbk.size()), &width, &height) != 0) return "-1";
    std::int32_t lineHeight = 0;
    tvTextExtent(dc, "Wg", 2, nullptr, &lineHeight);
    return std::to_string(width) + 'x' + (height == lineHeight ? "H" : std::to_string(height));
  }

  Dc dc{4, 4};
};

TEST_F(TextMeasureTest, CountsAdvancesInWholePixels) {
  const struct {
    std::string text;
    const char* extent;
  } kCases[] = {
      {"", "0x0"}, {" ", "5xH"}, {"iW", "17xH"}, {"\xB8\xDF", "16xH"}, {"\xB8\xDF\xB8\xDFWW", "58xH"},
  };
  for (const auto& testCase : kCases) EXPECT_EQ(Extent(testCase.text), testCase.extent) << testCase.text;
  // A lead byte takes the next byte with it, whatever it is, and one at the end stands alone.
  EXPECT_EQ(Extent("\xB8 "), Extent("\xFE\xFE"));
  EXPECT_EQ(Extent("\xB8"), Extent("\xFF"));
  EXPECT_NE(Extent(std::string("a\0b", 3)), Extent("a")) << "a zero does not end the text";
}

TEST_F(TextMeasureTest, RefusesFontsThatAreNotThereOrHaveNoChinese) {
  for (const char* family :
       {"No Such Font 4711", "SimSun,WenQuanYi Zen Hei", "DejaVu Sans", "", "WenQuanYi", "\xFF\xFE"}) {
    EXPECT_EQ(tvSelectFont(dc, family, 16), -1) << family;
  }
  EXPECT_EQ(tvSelectFont(dc, nullptr, 16), -1);
  for (const int height : {0, -16, 1001, INT_MIN}) EXPECT_EQ(tvSelectFont(dc, "WenQuanYi Zen Hei", height), -1);
  EXPECT_EQ(Extent("W"), "13xH") << "the font selected before stays";

  for (const char* family : {"wenquanyi ZEN hei", "文泉驿正黑", "sans-serif", "Monospace"}) {
    EXPECT_EQ(tvSelectFont(dc, family, 16), 0) << family;
  }
  EXPECT_EQ(tvSelectFont(dc, "WenQuanYi Zen Hei", 32), 0);
  EXPECT_EQ(Extent("\xB8\xDF").substr(0, 3), "32x");
  EXPECT_EQ(tvSelectFont(dc, "WenQuanYi Zen Hei", 1000), 0);
}

TEST_F(TextMeasureTest, PaintsTheSamePixelsWhereverTheyAreSeen) {
  constexpr int kMargin = 40;
  const Dc small(30, 30);
  const Dc large(kMargin + 30, kMargin + 30);
  for (const Dc* picture : {&small, &large}) ASSERT_EQ(tvSelectFont(*picture, "WenQuanYi Zen Hei", 16), 0);
  const std::int32_t kAdvances[] = {9, 8, 8, 20, 9};
  for (const auto& [x, y] : {std::pair{-3, -4}, {-12, 20}, {15, 25}, {2, 3}}) {
    platform::PaintText(small, x, y, "W\xB8\xDFgW", kAdvances);
    platform::PaintText(large, x + kMargin, y + kMargin, "W\xB8\xDFgW", kAdvances);
    EXPECT_EQ(RowsOf(small), RowsOf(large, kMargin, kMargin)) << x << ',' << y;
  }
  const Rows before = RowsOf(small);
  const std::int32_t kFarAdvances[] = {kFarRight, kFarRight, kFarLeft};
  for (const auto& [x, y] : {std::pair{kFarLeft, kFarLeft}, {kFarRight, 0}, {0, kFarRight}}) {
    platform::PaintText(small, x, y, "WWW", kFarAdvances);
  }
  platform::PaintText(small, 0, 0, "\t\n\x7F ", kAdvances);  // a font may have boxes for these
  platform::PaintText(small, 0, 0, "WWW", {});
  EXPECT_EQ(RowsOf(small), before);
}

// Two characters 4096 apart, which glyphs that are kept must not mix up.
TEST_F(TextMeasureTest, PaintsACharacterAlikeWhateverWasPaintedBefore) {
  const std::int32_t kAdvances[] = {8, 8};
  const Dc together(20, 20);
  ASSERT_EQ(tvSelectFont(together, "WenQuanYi Zen Hei", 16), 0);
  for (const char* character : {"\xB6\xA1", "\xB1\xD2", "\xB6\xA1"}) {
    const Dc alone(20, 20);
    ASSERT_EQ(tvSelectFont(alone, "WenQuanYi Zen Hei", 16), 0);
    tvFill(together, 0, 0, 20, 20, 0xFFFFFF);
    platform::PaintText(together, 0, 0, character, kAdvances);
    platform::PaintText(alone, 0, 0, character, kAdvances);
    EXPECT_EQ(RowsOf(together), RowsOf(alone));
    EXPECT_NE(RowsOf(alone), Rows(20, std::string(20, '.')));
  }
}

TEST_F(TextMeasureTest, ListsTheFontsThatCanBeSelected) {
  std::vector<char> names(1 << 16);
  const int size = tvListFonts(names.data(), static_cast<int>(names.size()));
  ASSERT_EQ(size, static_cast<int>(std::strlen(names.data())) + 1);
  std::istringstream lines(names.data());
  Rows families;
  for (std::string family; std::getline(lines, family); families.push_back(family)) {
    EXPECT_EQ(tvSelectFont(dc, family.c_str(), 16), 0) << family;
  }
  const auto listed = [&](const char* family) { return std::count(families.begin(), families.end(), family); };
  EXPECT_EQ(std::max(listed("WenQuanYi Zen Hei"), listed("文泉驿正黑")), 1)
      << "in the system's language or in every one";
  EXPECT_EQ(tvListFonts(names.data(), size - 1), -1);
  EXPECT_EQ(tvListFonts(nullptr, size), -1);
}

TEST_F(TextMeasureTest, RefusesMissingTextAndMissingFonts) {
  const Dc withoutFont(1, 1);
  std::int32_t result[256];
  EXPECT_EQ(tvTextExtent(dc, "ab", 1, nullptr, nullptr), 0) << "a result that nobody wants";
  EXPECT_EQ(tvTextExtent(dc, nullptr, 1, result, result), -1);
  EXPECT_EQ(tvTextExtent(dc, "ab", -1, result, result), -1);
  EXPECT_EQ(tvCharWidths(dc, nullptr), -1);
  EXPECT_EQ(tvTextExtent(withoutFont, "a", 1, result, result), -1);
  EXPECT_EQ(tvCharWidths(withoutFont, result), -1);
}

}  // namespace
}  // namespace tavimo::tests
