// File services for hosts: is it there, copy what matches, find the disc that holds it.
#pragma once

#include <cstdint>

#include "platform/files.h"

namespace tavimo::hostutil {

// Whether a directory search for the path finds an entry: a file, a folder or a wildcard match.
[[nodiscard]] inline bool FileExists(const char* path) noexcept { return platform::EntryExists(path); }

// Copies what matches pattern in fromFolder over the files of the same names in toFolder; both end in a backslash.
// Entries that cannot be copied (folders, locked files) are passed over. -1 when nothing matches, else 1.
std::int32_t StrongCopyFile(const char* toFolder, const char* pattern, const char* fromFolder) noexcept;

// The index (0 = A:) of the first CD-ROM drive that holds a path of at most 36 bytes, or -1.
[[nodiscard]] std::int32_t FindCdRomDrive(const char* relativePath) noexcept;

}  // namespace tavimo::hostutil
