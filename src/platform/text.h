// GBK (code page 936): its characters, and conversion from and to UTF-8. One table serves every platform.
// Message literals are in gbk_literal.h.
#pragma once

#include <cstddef>
#include <string_view>

namespace tavimo::platform {

// Whether a byte begins a character of two bytes.
constexpr bool IsLeadByte(char byte) noexcept {
  const auto value = static_cast<unsigned char>(byte);
  return value >= 0x81 && value <= 0xFE;
}

// How many bytes of text, at most limit, hold only whole characters.
[[nodiscard]] std::size_t WholeCharacterBytes(std::string_view text, std::size_t limit) noexcept;

// The Unicode character of one GBK character (single-byte: trail 0), or 0 when there is none.
[[nodiscard]] char32_t UnicodeFromGbk(unsigned char lead, unsigned char trail) noexcept;

// The GBK code of a Unicode character (below 0x100: one byte), or -1 when there is none.
[[nodiscard]] int GbkFromUnicode(char32_t character) noexcept;

// Convert text and add a zero. The result is the bytes written without the zero, or -1 when the text is malformed, has
// a character that the other side lacks, or does not fit in size bytes; the buffer then holds an empty string.
int GbkFromUtf8(std::string_view utf8, char* gbk, std::size_t size) noexcept;
int Utf8FromGbk(std::string_view gbk, char* utf8, std::size_t size) noexcept;

}  // namespace tavimo::platform
