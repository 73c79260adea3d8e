#include "small_digits.h"

#include <array>
#include <cstdint>

namespace tavimo::host {

namespace {

constexpr std::string_view kCharacters = "0123456789:.-aceknst";

// Seven rows from the top, five columns in the low bits, the leftmost the highest.
constexpr std::array<std::array<std::uint8_t, kDigitHeight>, kCharacters.size()> kShapes = {{
    {0b01110, 0b10001, 0b10011, 0b10101, 0b11001, 0b10001, 0b01110},
    {0b00100, 0b01100, 0b00100, 0b00100, 0b00100, 0b00100, 0b01110},
    {0b01110, 0b10001, 0b00001, 0b00110, 0b01000, 0b10000, 0b11111},
    {0b01110, 0b10001, 0b00001, 0b00110, 0b00001, 0b10001, 0b01110},
    {0b00010, 0b00110, 0b01010, 0b10010, 0b11111, 0b00010, 0b00010},
    {0b11111, 0b10000, 0b11110, 0b00001, 0b00001, 0b10001, 0b01110},
    {0b00110, 0b01000, 0b10000, 0b11110, 0b10001, 0b10001, 0b01110},
    {0b11111, 0b00001, 0b00010, 0b00100, 0b01000, 0b01000, 0b01000},
    {0b01110, 0b10001, 0b10001, 0b01110, 0b10001, 0b10001, 0b01110},
    {0b01110, 0b10001, 0b10001, 0b01111, 0b00001, 0b00010, 0b01100},
    {0b00000, 0b00100, 0b00100, 0b00000, 0b00100, 0b00100, 0b00000},
    {0b00000, 0b00000, 0b00000, 0b00000, 0b00000, 0b01100, 0b01100},
    {0b00000, 0b00000, 0b00000, 0b01110, 0b00000, 0b00000, 0b00000},
    {0b00000, 0b00000, 0b01110, 0b00001, 0b01111, 0b10001, 0b01111},
    {0b00000, 0b00000, 0b01110, 0b10000, 0b10000, 0b10001, 0b01110},
    {0b00000, 0b00000, 0b01110, 0b10001, 0b11111, 0b10000, 0b01110},
    {0b10000, 0b10000, 0b10010, 0b10100, 0b11000, 0b10100, 0b10010},
    {0b00000, 0b00000, 0b10110, 0b11001, 0b10001, 0b10001, 0b10001},
    {0b00000, 0b00000, 0b01110, 0b10000, 0b01110, 0b00001, 0b11110},
    {0b01000, 0b01000, 0b11100, 0b01000, 0b01000, 0b01001, 0b00110},
}};

}  // namespace

void DrawDigits(VcDc picture, int x, int y, std::string_view text, std::uint32_t colour) {
  for (const char character : text) {
    const std::size_t index = kCharacters.find(character);
    for (int row = 0; index != std::string_view::npos && row < kDigitHeight; ++row) {
      for (int column = 0; column < kDigitWidth; ++column) {
        const int bit = kShapes[index][static_cast<std::size_t>(row)] >> (kDigitWidth - 1 - column) & 1;
        if (bit != 0) tvFill(picture, x + column, y + row, 1, 1, colour);
      }
    }
    x += kDigitAdvance;
  }
}

}  // namespace tavimo::host
