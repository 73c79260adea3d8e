// The pieces in which sound is read and written when the kernel cannot copy it as it is.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavimo::waveedit {

// Large pieces keep copying at the speed of the disk.
inline constexpr std::size_t kTransferBytes = 256 * 1024;

struct TransferBuffers {
  std::array<std::uint8_t, kTransferBytes> source;
  std::array<std::uint8_t, kTransferBytes / 2> output;
};

}  // namespace tavimo::waveedit
