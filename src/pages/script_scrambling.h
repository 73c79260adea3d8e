// Scrambled scripts: the byte at script offset o is stored as byte ^ key[o % 56]. It hides a lesson's text from a glance
// into the file and is no secret; a publisher may build the engine with a key of its own (TAVIMO_SCRAMBLE_KEY).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tavimo::pages {

inline constexpr std::size_t kScrambleKeyBytes = 56;
using ScrambleKey = std::array<std::uint8_t, kScrambleKeyBytes>;
extern const ScrambleKey kScrambleKey;

enum class Scrambling { Plain, Scrambled };

// What the exports' argument says.
constexpr Scrambling ScramblingOf(std::int32_t scrambled) noexcept {
  return scrambled != 0 ? Scrambling::Scrambled : Scrambling::Plain;
}

// What a script's extension says: ".nor" in any case is scrambled.
[[nodiscard]] Scrambling ScramblingByName(const char* scriptPath) noexcept;

// Restores text that was read from a script offset, or scrambles it: both are the same. Plain text stays as it is.
void Unscramble(std::span<std::uint8_t> text, std::uint64_t scriptOffset, Scrambling scrambling) noexcept;

}  // namespace tavimo::pages
