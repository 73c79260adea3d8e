// Engine paths (GBK, backslashes, an optional drive letter) and native paths (UTF-8, slashes), turned into one another.
// Not for opening what they name: that is files.h.
//
// A path is decoded character by character first: a 0x5C that is the second byte of a GBK character separates nothing.
// "C:\x" lies in the folder of its drive (drives.h), "\x" in "/", "x" in the current directory; "C:x" counts as "C:\x",
// because there is no current directory for each drive. Characters that the other platform forbids in names ("?", ":")
// are ordinary ones here: a lesson that has them in its name must open.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/common/engine_path.h"

namespace tavimo::platform {

// Names are compared by this: ASCII letters have one case, bytes of other characters stay as they are.
constexpr char FoldedLetter(char byte) noexcept {
  return byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - ('a' - 'A')) : byte;
}

// Nothing for a null or empty path, bytes that form no GBK character, and a drive letter without a folder. A component
// that does not exist as spelled becomes the one that differs only in the case of ASCII letters (the first by byte value
// when there are several); where there is none either, it and what follows stay as spelled.
[[nodiscard]] std::optional<std::string> NativePath(const char* enginePath) noexcept;

// The same path in two parts, the folder with its stored spelling ("." for none), the name as the caller spells it
// (empty when the path ends in a separator or is a bare drive).
struct NativeLocation {
  std::string folder;
  std::string name;
  [[nodiscard]] std::string Path() const { return folder + '/' + name; }
};
[[nodiscard]] std::optional<NativeLocation> LocateNative(const char* enginePath) noexcept;

// The other way, EnginePath, is declared in engine_path.h: an absolute path gets the letter of the longest drive folder
// that contains it; a name with a backslash has no engine path.

}  // namespace tavimo::platform
