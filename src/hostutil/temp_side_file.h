// Where the digest of a recording lies, and whether it is current.
#pragma once

#include <string_view>

#include "core/fixed_text.h"

namespace tavimo::digest {

struct DigestPaths {
  core::FixedText<199> working;  // "temp\" + the file name without its extension + ".tmp"
  core::FixedText<199> beside;   // the recording's path without its extension + ".tmp"
};

// False when the recording's path is empty or longer than 199 bytes, its file name longer than 99, or a result has no
// room: a cut path would lead to another recording's digest. Goes by bytes; the extension is cut at the last dot of the
// path, also when that dot stands in a folder's name.
[[nodiscard]] bool DeriveDigestPaths(std::string_view recordingPath, DigestPaths& paths) noexcept;

// Whether the working digest carries the recording's file time, or a digest beside the recording was copied into its
// place. That one counts whatever its time.
[[nodiscard]] bool EnsureDigest(const char* recordingPath) noexcept;

}  // namespace tavimo::digest
