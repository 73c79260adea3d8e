// Finds the two parameters by which the engine cuts a recording well. Cutting itself is the engine's: this tries many
// pairs of threshold and silence length, which costs next to nothing, and judges what comes out.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace tavimo::host {

struct Cut {
  int threshold = 0;
  int silenceMs = 0;
  std::vector<std::uint32_t> startsMs;  // none when nothing is louder than the threshold
};

// Cuts the digest that is open in the engine. A parameter that is given is kept, the other one found.
// REQUIRES: levels are those of the open digest, at least one.
[[nodiscard]] Cut FindSentences(const std::vector<std::uint8_t>& levels, std::optional<int> threshold,
                                std::optional<int> silenceMs);

}  // namespace tavimo::host
