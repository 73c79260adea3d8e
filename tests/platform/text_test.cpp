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

TEST(Text, CutsBetweenCharacters) {
  const struct {
    const char* text;
    std::size_t limit, length;
  } cases[] = {{"", 5, 0},
               {"abc", 2, 2},
               {"abc", 9, 3},
               {"\xB8\xDF", 1, 0},
               {"\xB8\xDF", 2, 2},
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
