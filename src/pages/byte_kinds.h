// What a byte of a script is to the breaking of lines and to the counting of words. Everything here goes by bytes: the
// second byte of a Chinese character may count as a letter.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavimo::pages {

inline constexpr std::uint8_t kCarriageReturn = 0x0D;
inline constexpr std::uint8_t kLineFeed = 0x0A;
inline constexpr std::uint8_t kMarkerByte = '@';  // two of them at the start of a line mark a paragraph

constexpr bool IsLetter(std::uint8_t byte) noexcept { return static_cast<std::uint8_t>((byte | 0x20) - 'a') < 26; }
constexpr bool IsDigit(std::uint8_t byte) noexcept { return static_cast<std::uint8_t>(byte - '0') < 10; }

// Words are maximal runs of these.
constexpr bool IsWordByte(std::uint8_t byte) noexcept { return IsLetter(byte) || IsDigit(byte); }

// Half of a Chinese character.
constexpr bool IsDoubleByte(std::uint8_t byte) noexcept { return byte >= 0x80; }

// What a line's break does at a byte.
enum class BreakKind : std::uint8_t {
  EndOfText,
  LineEnd,     // CR
  DoubleByte,  //
  WordPart,    // letters, digits and the apostrophe
  Blank,       // 0x01 to 0x20, without TAB and CR
  Quote,       // "
  Other,       // punctuation, TAB
};

constexpr BreakKind BreakKindOf(std::uint8_t byte) noexcept {
  if (byte == 0) return BreakKind::EndOfText;
  if (byte == kCarriageReturn) return BreakKind::LineEnd;
  if (IsDoubleByte(byte)) return BreakKind::DoubleByte;
  if (IsWordByte(byte) || byte == '\'') return BreakKind::WordPart;
  if (byte <= ' ' && byte != '\t') return BreakKind::Blank;
  return byte == '"' ? BreakKind::Quote : BreakKind::Other;
}

}  // namespace tavimo::pages
