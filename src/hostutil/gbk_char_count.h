// How long a GBK text is in the host's characters; every text export answers with it.
#pragma once

#include <cstdint>
#include <string_view>

namespace tavimo::hostutil {

// Bytes less half the bytes of 0x80 and above. When their number is odd, the stray one counts as two characters: hosts
// rely on the count as it always was.
[[nodiscard]] std::int32_t GbkCharCount(std::string_view text) noexcept;

// GbkCharCount of the path up to and including its last backslash, or -1 when there is none. Goes by bytes, so a second
// byte of 0x5C counts; the byte at index 0 is not looked at.
[[nodiscard]] std::int32_t FindLastSlash(std::string_view path) noexcept;

}  // namespace tavimo::hostutil
