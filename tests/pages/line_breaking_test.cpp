// Where lines end, against the rule written out byte by byte.
#include "pages/line_breaking.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "platform/gbk_literal.h"

namespace tavimo::tests {
namespace {

using namespace platform::literals;
using pages::LineBreak;

constexpr bool kEnds = true;

std::string Describe(const LineBreak& found) {
  return std::to_string(found.kept) + '+' + (found.endsText ? "end" : std::to_string(found.advance));
}

TEST(LineBreaking, KeepsWordsAndCharactersWhole) {
  const struct {
    std::string text;
    int width;  // each byte is 1 wide, "@" 5
    LineBreak layout;
    LineBreak pagination;
  } kCases[] = {
      {"hello world", 9, {6, 6}, {6, 6}},  // the word moves down, the space ends the line
      {"hello world", 12, {11, 0, kEnds}, {11, 0, kEnds}},
      {"hello world", 11, {6, 6}, {6, 6}},  // a line that would fill the width exactly
      {"helloworld", 5, {4, 4}, {4, 4}},
      {"say \"hi\"", 5, {3, 3}, {3, 3}},  // the quote takes the byte before it along
      {"\"b", 1, {-1, -1}, {-1, -1}},
      {u8"a中文字"_gbk, 5, {3, 3}, {3, 3}},
      {u8"一二三四五六七八九"_gbk, 18, {16, 16}, {16, 16}},
      {u8"好。\"x"_gbk, 5, {3, 3}, {3, 3}},  // here half a character
      {"ab\r", 9, {2, 3}, {2, 3}},
      {"ab\rcd", 9, {2, 4}, {2, 3}},
      {"ab\ncd", 3, {3, 3}, {2, 3}},
      {"ab\n\ncd", 3, {3, 3}, {2, 4}},
      {"\r\n", 9, {0, 2}, {0, 2}},
      {" b", -7, {1, 1}, {1, 1}},
      {"@@ab cd", 7, {5, 5}, {5, 5}},  // two blanks wide
      {"@ab", 5, {0, 0}, {0, 0}},
  };
  platform::ByteAdvances advances;
  advances.fill(1);
  advances['@'] = 5;
  for (const auto& testCase : kCases) {
    SCOPED_TRACE(testCase.text + " in " + std::to_string(testCase.width));
    const pages::LineBreaker breaker(advances, testCase.width);
    std::string text = testCase.text;
    auto* bytes = reinterpret_cast<std::uint8_t*>(text.data());
    EXPECT_EQ(Describe(breaker.BreakForLayout(bytes)), Describe(testCase.layout));
    EXPECT_EQ(text, testCase.text) << "a layout leaves the text alone";
    EXPECT_EQ(Describe(breaker.BreakForPagination(bytes)).substr(1), Describe(testCase.pagination).substr(1));
    const bool isMarked = testCase.text.substr(0, 2) == "@@";
    EXPECT_EQ(text, isMarked ? "  " + testCase.text.substr(2) : testCase.text);
  }
}

// The rule for a layout, a byte at a time.
LineBreak PlainBreak(const std::string& text, const platform::ByteAdvances& advances, int width) {
  const auto byteAt = [&](int index) { return static_cast<unsigned char>(text.c_str()[index]); };
  const auto isDouble = [&](int index) { return byteAt(index) >= 0x80; };
  int k = -1, sum = 0, lastSpace = -1, run = 0;
  do {
    const int c = byteAt(++k);
    if (c == ' ') lastSpace = k;
    sum += advances[static_cast<std::size_t>(c)];
    run = isDouble(k) ? run + 1 : 0;
  } while (sum < width && byteAt(k) != '\r' && byteAt(k) != 0);
  if (run > 0 && run % 2 == 0) --k;
  const int c = byteAt(k);
  if (c == 0) return {k, 0, kEnds};
  if (c == '\r') return {k, byteAt(k + 1) == 0 ? k + 1 : k + 2};
  if (c >= 0x80 || c == '\t') return {k, k};
  if (c <= ' ') return {k + 1, k + 1};
  if (c == '"') return {k - 1, k - 1};
  if (std::isalnum(c) || c == '\'') return {lastSpace < 0 ? k : lastSpace + 1, lastSpace < 0 ? k : lastSpace + 1};
  return {k, k};
}

TEST(LineBreaking, IsTheSameInLargeSteps) {
  std::mt19937 random(7);
  const std::string alphabet = "abcXYZ019''  \t\n\r.,-\"@\x01\x7F\x80\xA1\xB0\xC4\xFF\xFE\xA3\xD0";
  for (int round = 0; round < 20000; ++round) {
    platform::ByteAdvances advances;
    for (auto& advance : advances) advance = static_cast<std::int32_t>(random() % 12);
    std::string text(random() % 60, '\0');
    const std::size_t kinds = round % 2 == 0 ? alphabet.size() : 10;
    for (char& byte : text) byte = alphabet[alphabet.size() - 1 - random() % kinds];
    const int width = static_cast<int>(random() % 300);
    const bool isMarked = text.substr(0, 2) == "@@";
    const std::string blanked = isMarked ? "  " + text.substr(2) : text;
    const LineBreak expected = PlainBreak(blanked, advances, width);
    const pages::LineBreaker breaker(advances, width);
    ASSERT_EQ(Describe(breaker.BreakForLayout(reinterpret_cast<std::uint8_t*>(text.data()))), Describe(expected));
  }
}

}  // namespace
}  // namespace tavimo::tests
