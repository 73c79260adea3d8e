// The code page's table against the C library's.
#include <gtest/gtest.h>
#include <iconv.h>

#include <string_view>

#include "platform/text.h"

namespace tavimo::platform {
namespace {

constexpr unsigned kRefused = 0xFFFFFFFF;

// The bytes that a converter makes of a text as one number, the first byte in the lowest place or in the highest.
class Converter {
 public:
  Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {}
  ~Converter() { iconv_close(handle_); }

  unsigned operator()(std::string_view text, bool isLowestFirst) {
    unsigned char bytes[8];
    char* in = const_cast<char*>(text.data());
    char* out = reinterpret_cast<char*>(bytes);
    std::size_t inLeft = text.size();
    std::size_t outLeft = sizeof bytes;
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    if (iconv(handle_, &in, &inLeft, &out, &outLeft) != 0) return kRefused;
    unsigned value = 0;
    const std::size_t count = sizeof bytes - outLeft;
    for (std::size_t i = 0; i < count; ++i) value = value << 8 | bytes[isLowestFirst ? count - 1 - i : i];
    return value;
  }

 private:
  iconv_t handle_;
};

TEST(CodePage, EveryCodeIsTheCLibrarys) {
  Converter decode("UTF-32LE", "CP936");
  int known = 0;
  for (unsigned code = 0; code < 0x10000; ++code) {
    const char bytes[2] = {static_cast<char>(code >> 8), static_cast<char>(code)};
    const bool isPair = code > 0xFF;
    if (isPair && (!IsLeadByte(bytes[0]) || bytes[1] == 0)) continue;
    const char32_t character =
        isPair ? UnicodeFromGbk(static_cast<unsigned char>(code >> 8), static_cast<unsigned char>(code))
               : UnicodeFromGbk(static_cast<unsigned char>(code), 0);
    const unsigned expected = decode(isPair ? std::string_view(bytes, 2) : std::string_view(bytes + 1, 1), true);
    ASSERT_EQ(static_cast<unsigned>(character), expected == kRefused ? 0 : expected) << std::hex << code;
    known += expected != kRefused;
  }
  EXPECT_EQ(known, 21920) << "128 of one byte, the euro sign, 21791 pairs";
}

TEST(CodePage, EveryCharacterHasTheCLibrarysCodeOrNone) {
  Converter encode("CP936", "UTF-32LE");
  for (char32_t character = 0; character < 0x11000; ++character) {
    const char bytes[4] = {static_cast<char>(character), static_cast<char>(character >> 8),
                           static_cast<char>(character >> 16), 0};
    ASSERT_EQ(static_cast<unsigned>(GbkFromUnicode(character)), encode({bytes, 4}, false))
        << std::hex << static_cast<unsigned>(character);
  }
}

}  // namespace
}  // namespace tavimo::platform
