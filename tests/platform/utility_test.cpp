// The four operations of the utility library.
#include "platform/utility.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/scratch_folder.h"

namespace tavimo::platform {
namespace {

TEST(Utility, AMissingFileHasNoTime) {
  tests::ScratchFolder folder;
  tests::WriteText("there", "1");
  for (const char* missing : {static_cast<const char*>(nullptr), "", "missing", "missing\\there", "\xFF"}) {
    EXPECT_FALSE(IsSameTimeFiles("there", missing));
    EXPECT_FALSE(IsSameTimeFiles(missing, missing));
    EXPECT_FALSE(SetSameFileTime(missing, "there"));
    EXPECT_FALSE(SetSameFileTime("there", missing));
  }
}

TEST(Utility, AnExtensionBeginsAtTheLastDotOfTheName) {
  const struct {
    const char* path;
    int size;
    const char* extension;
  } cases[] = {{"d\\a.b.zud", 10, ".zud"},
               {"", 10, ""},
               {nullptr, 10, ""},
               {"d.x\\name", 10, ""},
               {"d.x/name", 10, ""},
               {".hidden", 10, ".hidden"},
               {"a.", 10, "."},
               {"a.\xD5\x5C", 10, ".\xD5\x5C"},
               {"a.longer", 5, ".lon"},
               {"a.\xB8\xDF", 3, "."},
               {"a.wav", 1, ""}};
  for (const auto& test : cases) {
    char extension[10] = "#########";
    GetFileExtName(test.path, extension, test.size);
    EXPECT_STREQ(extension, test.extension) << (test.path == nullptr ? "null" : test.path);
  }
  char untouched = '#';
  GetFileExtName("a.wav", &untouched, 0);
  EXPECT_EQ(untouched, '#');
  GetFileExtName("a.wav", nullptr, 10);
}

TEST(Utility, TrimsWhiteSpaceAtTheEndOnly) {
  const struct {
    const char* text;
    const char* trimmed;
  } cases[] = {
      {"", ""}, {" \t\r\n\v\f", ""}, {" a b \r\n", " a b"}, {"a", "a"}, {"\xD5\x5C\xA1\xA1 ", "\xD5\x5C\xA1\xA1"}};
  for (const auto& test : cases) {
    std::string text = test.text;
    StrongRtrim(text.data());
    EXPECT_STREQ(text.c_str(), test.trimmed);
  }
  StrongRtrim(nullptr);
}

}  // namespace
}  // namespace tavimo::platform
