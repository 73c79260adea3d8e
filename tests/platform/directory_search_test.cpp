// What a directory search finds, and in which order.
#include <gtest/gtest.h>

#include <fstream>

#include "platform/files.h"
#include "platform/gbk_literal.h"
#include "support/scratch_folder.h"

namespace tavimo::platform {
namespace {

class DirectorySearching : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::create_directories("d/Folder");
    // The last one is a name that no engine path can spell.
    for (const char8_t* name : {u8"!x", u8"b.wav", u8"A.WAV", u8"mid", u8"mid.txt", u8".dot", u8"_x", u8"a.b.c",
                                u8"高誠.wav", u8"\u30FB.wav"}) {
      tests::WriteText(std::filesystem::path("d") / name, "");
    }
  }

  static std::string Found(const char* pattern) {
    std::string names;
    DirectorySearch search(pattern);
    while (const char* name = search.Next()) names += std::string(name) + '|';
    EXPECT_EQ(EntryExists(pattern), !names.empty()) << pattern;
    return names;
  }

  tests::ScratchFolder folder_;
};

TEST_F(DirectorySearching, FindsByWildcardsInTheOrderOfNamesWithoutCase) {
  const char* const chineseName = u8"高誠.wav"_gbk;
  const std::string chinese = chineseName + std::string("|");
  const std::string everything = ".|..|!x|.dot|a.b.c|A.WAV|b.wav|Folder|mid|mid.txt|_x|" + chinese;
  const struct {
    const char* pattern;
    std::string names;
  } cases[] = {{"d\\*", everything},
               {"d/*.*", everything},
               {"D\\*.wav", "A.WAV|b.wav|" + chinese},
               {"d\\?.wav", "A.WAV|b.wav|"},
               {"d\\mid.*", "mid|mid.txt|"},
               {"d\\mid*.*", "mid|mid.txt|"},
               {"d\\m*d", "mid|"},
               {"d\\*.b.*", "a.b.c|"},
               {"d\\*b*c*", "a.b.c|"},
               {"d\\a.b", ""},
               {"d\\.*", ".|..|.dot|"},
               {"d\\b.w?", ""},
               {"d\\*x*x*", ""}};
  for (const auto& test : cases) EXPECT_EQ(Found(test.pattern), test.names) << test.pattern;
}

TEST_F(DirectorySearching, WithoutWildcardsFindsOneEntryInItsStoredSpelling) {
  EXPECT_EQ(Found("d\\a.wav"), "A.WAV|");
  EXPECT_EQ(Found("D\\FOLDER"), "Folder|");
  EXPECT_EQ(Found(("d\\" + std::string(u8"高誠.WAV"_gbk)).c_str()), std::string(u8"高誠.wav"_gbk) + '|');
  for (const char* nothing : {"", "d\\", "d/", "\\", "C:", "C:\\", "d\\missing", "missing\\*", "d?\\*", "*\\mid",
                              "d\\mid\\*", "d\\mid\\x", "\xB8"}) {
    EXPECT_EQ(Found(nothing), "") << nothing;
  }
  EXPECT_FALSE(EntryExists(nullptr));
}

TEST_F(DirectorySearching, AnEmptyFolderHasItsTwoDotEntries) { EXPECT_EQ(Found("d\\Folder\\*"), ".|..|"); }

}  // namespace
}  // namespace tavimo::platform
