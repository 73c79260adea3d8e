// The side file that a recording has in the folder "temp" (its digest, its sound parameters): where it lies, and whether
// it is current. What is in it is its maker's business.
#pragma once

#include <string_view>

#include "core/fixed_text.h"

namespace tavimo::hostutil {

struct SidePaths {
  core::FixedText<199> working;  // "temp\" + the file name without its extension + the side file's extension
  core::FixedText<199> beside;   // the recording's path without its extension + the side file's extension
};

// False when the recording's path is empty or longer than 199 bytes, its file name longer than 99, or a result has no
// room: a cut path would lead to another recording's side file. Goes by bytes; the extension is cut at the last dot of
// the path, also when that dot stands in a folder's name.
[[nodiscard]] bool DeriveSidePaths(std::string_view recordingPath, std::string_view extension,
                                   SidePaths& paths) noexcept;

// Whether the working file carries the recording's file time, or one beside the recording was copied into its place.
// That one counts whatever its time, and also when the copy fails.
[[nodiscard]] bool EnsureSideFile(const char* recordingPath, std::string_view extension) noexcept;

}  // namespace tavimo::hostutil
