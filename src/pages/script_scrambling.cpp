#include "pages/script_scrambling.h"

#include <algorithm>

#include "core/fixed_text.h"
#include "core/text_compare.h"
#include "platform/utility.h"

// 56 bytes as 112 hexadecimal digits; the build option of the same name replaces them.
#ifndef TAVIMO_SCRAMBLE_KEY
#define TAVIMO_SCRAMBLE_KEY                          \
  "5B914C27D8A36E1FB07594E83A6CC2511DF7894360AED51B" \
  "9E27F4683CB18D52E5704AC9361F9BD487E25D0BA67813CF" \
  "4695BD38E17C0A53"
#endif

namespace tavimo::pages {

// Never defined: a digit that is none does not compile.
void scramble_key_has_a_character_that_is_no_hexadecimal_digit();

namespace {

consteval std::uint8_t DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<std::uint8_t>(digit - '0');
  if (digit >= 'A' && digit <= 'F') return static_cast<std::uint8_t>(digit - 'A' + 10);
  if (digit >= 'a' && digit <= 'f') return static_cast<std::uint8_t>(digit - 'a' + 10);
  scramble_key_has_a_character_that_is_no_hexadecimal_digit();
  return 0;
}

consteval ScrambleKey KeyFromDigits(const char (&digits)[2 * kScrambleKeyBytes + 1]) {
  ScrambleKey key{};
  for (std::size_t i = 0; i < key.size(); ++i) {
    key[i] = static_cast<std::uint8_t>(DigitValue(digits[2 * i]) << 4 | DigitValue(digits[2 * i + 1]));
  }
  return key;
}

}  // namespace

// NOLINTNEXTLINE(cert-err58-cpp): made by the compiler, constinit says so
constinit const ScrambleKey kScrambleKey = KeyFromDigits(TAVIMO_SCRAMBLE_KEY);

Scrambling ScramblingByName(const char* scriptPath) noexcept {
  std::array<char, 6> extension{};  // a longer one is cut, and is another one then too
  platform::GetFileExtName(scriptPath, extension.data(), extension.size());
  return core::CompareIgnoringCase(extension.data(), ".nor") == 0 ? Scrambling::Scrambled : Scrambling::Plain;
}

// The rule: text[i] ^= kScrambleKey[(scriptOffset + i) % 56]. Whole turns of the key have no division in them.
void Unscramble(std::span<std::uint8_t> text, std::uint64_t scriptOffset, Scrambling scrambling) noexcept {
  if (scrambling == Scrambling::Plain) return;
  auto keyIndex = static_cast<std::size_t>(scriptOffset % kScrambleKeyBytes);
  while (!text.empty()) {
    const std::size_t turn = std::min(text.size(), kScrambleKeyBytes - keyIndex);
    for (std::size_t i = 0; i < turn; ++i) text[i] ^= kScrambleKey[keyIndex + i];
    text = text.subspan(turn);
    keyIndex = 0;
  }
}

}  // namespace tavimo::pages
