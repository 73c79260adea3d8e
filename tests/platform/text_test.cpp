// GBK conversion of whole texts, broken ones among them. Every single code is checked against an oracle in linux/.
#include "platform/text.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/gbk_literal.h"

namespace tavimo::platform {
namespace {

std::string ToGbk(std::string_view utf8) {
  char gbk[64];
  const int length = GbkFromUtf8(utf8, gbk, sizeof gbk);
  return length < 0 ? "refused" : std::string(gbk, static_cast<std::size_t>(length));
}

std::string ToUtf8(std::string_view gbk) {
  char utf8[64];
  const int length = Utf8FromGbk(gbk, utf8, sizeof utf8);
  return length < 0 ? "refused" : std::string(utf8, static_cast<std::size_t>(length));
}

TEST(Text, TurnsEachFormIntoTheOther) {
  const struct {
    const char* gbk;
    const char* utf8;
  } pairs[] = {
      {"", ""},
      {"\x01~\x7F", "\x01~\x7F"},
      {"\x80", "\xE2\x82\xAC"},      // the euro sign has one byte
      {"\xA1\xA4", "\xC2\xB7"},      // middle dot, not U+30FB
      {"\xA1\xAA", "\xE2\x80\x94"},  // dash, not U+2015
      {"\xA8\x44", "\xE2\x80\x95"},
      {"\xA1\xAB", "\xEF\xBD\x9E"},
      {"\xB8\xDF", "\xE9\xAB\x98"},
      {"a\xD5\x5C"
       "b",
       "a\xE8\xAA\xA0"
       "b"},                         // a second byte like a backslash
      {"\x81\x40", "\xE4\xB8\x82"},  // the first pair
      {"\xFE\x4F", "\xEF\xA8\xA9"},  // the last one
  };
  for (const auto& pair : pairs) {
    EXPECT_EQ(ToUtf8(pair.gbk), pair.utf8);
    EXPECT_EQ(ToGbk(pair.utf8), pair.gbk);
  }
}

TEST(Text, RefusesWhatHasNoFormOnTheOtherSide) {
  using namespace std::string_view_literals;
  for (const std::string_view utf8 : {"\xE3\x83\xBB"sv, "\xE2\x80\xA2"sv, "\xC2\xA0"sv, "\xEE\x80\x80"sv,
                                      "\xF0\x9F\x98\x80"sv, "\x80"sv, "\xC0\xAF"sv, "\xE0\x80\xAF"sv, "\xE9\xAB"sv,
                                      "\xE9\xABz"sv, "\xED\xA0\x80"sv, "\xF4\x90\x80\x80"sv, "\xFF"sv, "a\0b"sv}) {
    EXPECT_EQ(ToGbk(utf8), "refused") << testing::PrintToString(utf8);
  }
  for (const std::string_view gbk : {"\xB8"sv, "\xFF"sv, "\xB8 "sv, "\xA2\xA0"sv, "\xFE\xFE"sv, "\xB8\xFF"sv,
                                     "\xB8\0"sv, "\xB8\x7F"sv, "\xAA\xA1"sv, "a\0b"sv}) {
    EXPECT_EQ(ToUtf8(gbk), "refused") << testing::PrintToString(gbk);
  }
}

TEST(Text, FillsABufferToTheLastByteAndNeverBeyond) {
  char gbk[6] = "#####";
  EXPECT_EQ(GbkFromUtf8("\xE9\xAB\x98\xE9\xAB\x98", gbk, 5), 4);
  EXPECT_EQ(std::string_view(gbk, 6), std::string_view("\xB8\xDF\xB8\xDF\0\0", 6));
  EXPECT_EQ(GbkFromUtf8("\xE9\xAB\x98\xE9\xAB\x98", gbk, 4), -1);
  EXPECT_STREQ(gbk, "");
  gbk[0] = '#';
  EXPECT_EQ(GbkFromUtf8("", gbk, 0), -1);
  EXPECT_EQ(gbk[0], '#');
}

TEST(Text, CutsBetweenCharacters) {
  const struct {
    const char* text;
    std::size_t limit;
    std::size_t length;
  } cases[] = {{"", 5, 0},
               {"abc", 2, 2},
               {"abc", 9, 3},
               {"\xB8\xDF"
                "a",
                1, 0},
               {"\xB8\xDF"
                "a",
                2, 2},
               {"a\xB8\xDF", 2, 1},
               {"\xD5\x5C\xD5\x5C", 3, 2},
               {"a\xB8", 2, 1},
               {"\x80\xFF", 2, 2}};
  for (const auto& test : cases) EXPECT_EQ(WholeCharacterBytes(test.text, test.limit), test.length) << test.text;
}

TEST(Text, ConvertsLiteralsWhenTheCodeIsCompiled) {
  EXPECT_STREQ(u8""_gbk, "");
  EXPECT_STREQ(u8"a“高”—誠€"_gbk, "a\xA1\xB0\xB8\xDF\xA1\xB1\xA1\xAA\xD5\x5C\x80");
  constexpr const char* kText = u8"您已经启动"_gbk;
  EXPECT_STREQ(kText, "\xC4\xFA\xD2\xD1\xBE\xAD\xC6\xF4\xB6\xAF");
}

}  // namespace
}  // namespace tavimo::platform
