// The host kit's text, paths and drives: what is converted, and that every failure gives -1 and an empty string.

#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

using Call = int (*)(const char*, char*, int) noexcept;

// The call's result, its text and what follows in the buffer: nothing behind the room may be touched.
std::string Outcome(Call call, const char* text, int room) {
  char buffer[64];
  std::fill(std::begin(buffer), std::end(buffer), '~');
  const int result = call(text, buffer, room);
  for (std::size_t i = room < 0 ? 0 : static_cast<std::size_t>(room); i < sizeof buffer; ++i) EXPECT_EQ(buffer[i], '~');
  return std::to_string(result) + ":" + (room > 0 ? buffer : "");
}

TEST(HostKitTest, ConvertsTextWholeOrNotAtAll) {
  const struct {
    Call call;
    const char* text;
    int room;
    const char* outcome;
  } kCases[] = {
      {tvGbkFromUtf8, "a高€", 5, "5:a\xB8\xDF\x80"},
      {tvGbkFromUtf8, "a高€", 4, "-1:"},
      {tvGbkFromUtf8, "", 1, "1:"},
      {tvGbkFromUtf8, "🎵", 64, "-1:"},
      {tvGbkFromUtf8, "a\xE9\xAB", 64, "-1:"},
      {tvGbkFromUtf8, "a", 0, "-1:"},
      {tvUtf8FromGbk, "a\xB8\xDF\x80", 64, "8:a高€"},
      {tvUtf8FromGbk, "a\xB8\xDF\x80", 7, "-1:"},
      {tvUtf8FromGbk, "a\xB8", 64, "-1:"},
      {tvEnginePath, "temp/a.wav", 64, "11:temp\\a.wav"},
      {tvEnginePath, "/🎵", 64, "-1:"},
      {tvNativePath, "no\\such", 7, "-1:"},
      {tvNativePath, "\xB8", 64, "-1:"},
  };
  for (const auto& testCase : kCases) {
    SCOPED_TRACE(&testCase - kCases);
    EXPECT_EQ(Outcome(testCase.call, testCase.text, testCase.room), testCase.outcome);
  }
  for (const Call call : {tvGbkFromUtf8, tvUtf8FromGbk, tvEnginePath, tvNativePath})
    EXPECT_EQ(Outcome(call, nullptr, 64) + std::to_string(call("a", nullptr, 9)), "-1:-1");
}

}  // namespace
}  // namespace tavimo::tests
