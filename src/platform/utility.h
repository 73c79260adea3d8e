// The four operations the engine takes from its makers' utility library.
#pragma once

namespace tavimo::platform {

// Whether both files exist and have the same last-write time, to the resolution of the file system.
[[nodiscard]] bool IsSameTimeFiles(const char* left, const char* right) noexcept;

// Gives target the last-write time of source; false when either is missing or the time cannot be set.
bool SetSameFileTime(const char* source, const char* target) noexcept;

// Copies the extension of a path with its dot, or an empty string, cut to size - 1 bytes. A dot in a folder's name is
// none.
void GetFileExtName(const char* path, char* extension, int size) noexcept;

// Cuts trailing white space (blank, tab, CR, LF, VT, FF) in place.
void StrongRtrim(char* text) noexcept;

}  // namespace tavimo::platform
