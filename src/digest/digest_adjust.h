// Shortening a digest to the duration its recording really has.
#pragma once

#include <cstdint>

namespace tavimo::digest {

// Drops levels evenly from a digest that covers more than durationMs; it keeps its file time, so that it stays current.
// A digest that cannot be opened or is not too long stays as it is, and so it does when "tmpwav\tmptmptmp.tmp", where
// the shorter one is made, cannot be written.
void AdjustDigest(const char* digestPath, std::int32_t durationMs) noexcept;

}  // namespace tavimo::digest
