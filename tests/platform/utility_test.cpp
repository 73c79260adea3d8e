// The four operations of the utility library.
#include "platform/utility.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace tavimo::platform {
namespace {

TEST(Utility, AnExtensionBeginsAtTheLastDotOfTheName) {
  const char* const cases[][2] = {{"d\\a.b.zud", ".zud"},
                                  {"", ""},
                                  {nullptr, ""},
                                  {"d.x\\name", ""},
                                  {"d.x/name", ""},
                                  {".hidden", ".hidden"},
                                  {"a.", "."},
                                  {"a.\xD5\x5C", ".\xD5\x5C"}};
  char extension[10] = "#########";
  for (const auto& [path, expected] : cases) {
    GetFileExtName(path, extension, 10);
    EXPECT_STREQ(extension, expected);
  }
  const std::pair<int, const char*> kRooms[] = {{5, ".\xB8\xDFl"}, {3, "."}, {1, ""}, {0, ""}};
  for (const auto& [room, expected] : kRooms) {
    GetFileExtName("a.\xB8\xDFlong", extension, room);
    EXPECT_STREQ(extension, expected) << "whole characters, and nothing without room";
  }
  GetFileExtName("a.wav", nullptr, 10);
}

TEST(Utility, TrimsWhiteSpaceAtTheEndOnly) {
  for (std::string text : {"", " a b", "\xD5\x5C\xA1\xA1"}) {
    const std::string expected = text;
    StrongRtrim((text += " \t\r\n\v\f").data());
    EXPECT_STREQ(text.c_str(), expected.c_str());
  }
  StrongRtrim(nullptr);
}

}  // namespace
}  // namespace tavimo::platform
