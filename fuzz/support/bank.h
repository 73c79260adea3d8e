// Reads everything there is to read in an open bank, each text into a buffer of the room that the header asks for.
#pragma once

#include <cstdint>
#include <vector>

namespace tavimo::fuzz {

// The bytes of the index and how long the wz file is; both are open.
void ReadWholeBank(const std::vector<std::uint8_t>& index, std::size_t wzBytes);

}  // namespace tavimo::fuzz
