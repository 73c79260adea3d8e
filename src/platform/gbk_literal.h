// Message literals: written in UTF-8, GBK in the program. Conversion happens when the code is compiled, alike in every
// compiler, and a character that GBK lacks does not compile. Conversion at run time is in text.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavimo::platform {

namespace literal {

// Unicode << 16 | GBK code, sorted; made by tools/make_cp936_table.py.
inline constexpr std::uint32_t kTable[] = {
#include "platform/common/cp936_table.inc"
};
inline constexpr std::size_t kTableSize = sizeof kTable / sizeof *kTable;

template <std::size_t N>
struct Utf8 {
  char8_t bytes[N]{};
  consteval Utf8(const char8_t (&text)[N]) {  // NOLINT(google-explicit-constructor): a literal operator needs it
    for (std::size_t i = 0; i < N; ++i) bytes[i] = text[i];
  }
};

// Never defined: a literal with a character that GBK lacks calls it, and does not compile.
void character_has_no_gbk_form();

constexpr char32_t NextCharacter(const char8_t* text, std::size_t& index) {
  char32_t character = text[index++];
  if (character < 0x80) return character;
  int more = character >= 0xF0 ? 3 : character >= 0xE0 ? 2 : 1;
  character &= 0x3Fu >> more;
  while (more-- > 0) character = character << 6 | (text[index++] & 0x3Fu);
  return character;
}

constexpr int Lookup(char32_t character) {
  std::size_t low = 0;
  std::size_t high = kTableSize;
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    if (kTable[middle] >> 16 < character) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  if (low == kTableSize || kTable[low] >> 16 != character) return -1;
  return static_cast<int>(kTable[low] & 0xFFFF);
}

constexpr int Encode(char32_t character) {
  if (character < 0x80) return static_cast<int>(character);
  const int code = Lookup(character);
  if (code < 0) character_has_no_gbk_form();
  return code;
}

template <Utf8 Text>
constexpr std::size_t GbkLength() {
  std::size_t length = 0;
  for (std::size_t i = 0; i + 1 < sizeof Text.bytes;) length += Encode(NextCharacter(Text.bytes, i)) > 0xFF ? 2 : 1;
  return length;
}

template <Utf8 Text>
constexpr auto Convert() {
  std::array<char, GbkLength<Text>() + 1> gbk{};
  std::size_t length = 0;
  for (std::size_t i = 0; i + 1 < sizeof Text.bytes;) {
    const int code = Encode(NextCharacter(Text.bytes, i));
    if (code > 0xFF) gbk[length++] = static_cast<char>(code >> 8);
    gbk[length++] = static_cast<char>(code & 0xFF);
  }
  return gbk;
}

template <Utf8 Text>
inline constexpr auto kStored = Convert<Text>();

}  // namespace literal

inline namespace literals {

// u8"…"_gbk: the text in GBK, zero-terminated, for the life of the program. Give it to a const char* first where a const
// object of a class is made from it: clang 14 breaks down when it tries to print such an initialiser.
template <literal::Utf8 Text>
consteval const char* operator""_gbk() {
  return literal::kStored<Text>.data();
}

}  // namespace literals

}  // namespace tavimo::platform
