// The values of an INI file, by the rules of the platform's own reader.
#include "platform/profile.h"

#include <gtest/gtest.h>

#include "support/scratch_folder.h"

namespace tavimo::platform {
namespace {

std::string Value(const char* section, const char* key, const char* fallback = "default", int size = 100) {
  char text[200];
  std::fill_n(text, sizeof text, '#');
  const int length = GetProfileText(section, key, fallback, text, size, ".\\article.txt");
  EXPECT_STREQ(text, std::string(text, static_cast<std::size_t>(length)).c_str());
  EXPECT_EQ(text[length + 1], '#') << "written past the end";
  return text;
}

TEST(Profile, FindsTheFirstKeyOfTheFirstSectionOfAName) {
  tests::ScratchFolder folder;
  tests::WriteText(
      "article.txt",
      "top = above all sections\n; [Unit1]\r\n[ Unit1 ] text behind\r\n\r\n  1 =  first value \t\r\n"
      "1=second\r;2=comment\n2 = a ; b\r\n3=\" kept \"\r\n4='x'\r\n5=\"a\" b\r\n6=\r\nno equals sign\r\n"
      "7=x=y\r\n8=\"\r\n\xB8\x41=upper\r\n9=\xB8\xDF\xD5\x5C\r\n[open\r\na=1\r\n[\xB8\x5D]\r\n1=bracket\r\n"
      "[unit1]\r\n10=never\r\n[last]\n1=no line end");
  const char* const keys[][2] = {{"1", "first value"},
                                 {" 1 ", "first value"},
                                 {"2", "a ; b"},
                                 {"3", " kept "},
                                 {"4", "x"},
                                 {"5", "\"a\" b"},
                                 {"6", ""},
                                 {"7", "x=y"},
                                 {"8", "\""},
                                 {"\xB8\x41", "upper"},
                                 {"\xB8\x61", "default"},
                                 {"9", "\xB8\xDF\xD5\x5C"},
                                 {"10", "default"},
                                 {"01", "default"},
                                 {"no equals sign", "default"},
                                 {nullptr, "default"}};
  for (const auto& [key, value] : keys) EXPECT_EQ(Value(" UNIT1 ", key), value);
  const char* const elsewhere[][3] = {{"", "top", "above all sections"}, {"open", "a", "default"},
                                      {"\xB8\x5D", "1", "bracket"},      {"last", "1", "no line end"},
                                      {"missing", "1", "default"},       {nullptr, "1", "default"}};
  for (const auto& [section, key, value] : elsewhere) EXPECT_EQ(Value(section, key), value);
}

TEST(Profile, CutsAValueBetweenCharacters) {
  tests::ScratchFolder folder;
  tests::WriteText("article.txt", "[a]\n1=x\xB8\xDF\xB8\xDF\n");
  const char* const expected[] = {"", "x", "x", "x\xB8\xDF", "x\xB8\xDF", "x\xB8\xDF\xB8\xDF"};
  for (int size = 1; size <= 6; ++size) EXPECT_EQ(Value("a", "1", "", size), expected[size - 1]) << size;
  EXPECT_EQ(Value("a", "2", "\xB8\xDF\xB8\xDF", 4), "\xB8\xDF") << "the default is cut alike";
  char untouched = '#';
  EXPECT_EQ(GetProfileText("a", "1", "", &untouched, 0, "article.txt"), 0);
  EXPECT_EQ(untouched, '#');
}

TEST(Profile, AMissingFileGivesTheDefaultWithoutTrailingBlanksAndQuotes) {
  tests::ScratchFolder folder;
  EXPECT_EQ(Value("a", "1", " two words \t"), " two words");
  EXPECT_EQ(Value("a", "1", "\"quoted\""), "quoted");
  EXPECT_EQ(Value("a", "1", nullptr), "");
}

TEST(Profile, ReadsTheEncodingsThatAMarkAnnounces) {
  tests::ScratchFolder folder;
  tests::WriteText("article.txt", "\xEF\xBB\xBF[\xE9\xAB\x98]\n1=\xE8\xAA\xA0\xE2\x82\xAC\xE3\x83\xBB\xE9z\n");
  EXPECT_EQ(Value("\xB8\xDF", "1"), "\xD5\x5C\x80??z");
  using namespace std::string_view_literals;
  tests::WriteText("article.txt", "\xFF\xFE[\0a\0]\0\r\0\n\0\x31\0=\0\xD8\x9A\xFB\x30\n\0"sv);
  EXPECT_EQ(Value("a", "1"), "\xB8\xDF?");
}

TEST(Profile, LongLinesAndZerosHarmNothing) {
  tests::ScratchFolder folder;
  using namespace std::string_view_literals;
  const std::string tooLong(1'000'000, 'x');
  tests::WriteText("article.txt",
                   "[a]\n0=" + tooLong + "\n1=be" + std::string("\0hind\n", 6) + tooLong + "=1\n2=two\n");
  EXPECT_EQ(Value("a", "0"), std::string(99, 'x'));
  EXPECT_EQ(Value("a", "1"), "be");
  EXPECT_EQ(Value("a", "2"), "two");
}

}  // namespace
}  // namespace tavimo::platform
