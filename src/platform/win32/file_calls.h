// What the files of this back end share: handles of open files, and what the system says about a name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/win32/system.h"

namespace tavimo::platform {

// A stream keeps its handle as a number; that of none, -1, is the system's own.
inline HANDLE HandleOf(std::intptr_t stored) noexcept { return reinterpret_cast<HANDLE>(stored); }
inline std::intptr_t Stored(HANDLE handle) noexcept { return reinterpret_cast<std::intptr_t>(handle); }

// Whether a name is that of a folder or of a file that must not be written to. Asked before opening: a process may have
// rights that go beyond the mark.
inline bool IsFolderOrReadOnly(const std::wstring& path) noexcept {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES &&
         (attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0;
}

inline std::int64_t TicksFrom(const FILETIME& time) noexcept {
  return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

inline FILETIME FiletimeFrom(std::int64_t ticks) noexcept {
  return {static_cast<DWORD>(ticks & 0xFFFFFFFF), static_cast<DWORD>(ticks >> 32)};
}

// A name in the folder of another, of fixed length so that it fits where that one does, and always the same for one name
// and process. May throw std::bad_alloc.
[[nodiscard]] std::wstring NameBeside(const std::wstring& fullPath, const wchar_t* ending);

// Nothing for what WidePath refuses, and for a path that ends in a separator. May throw std::bad_alloc.
[[nodiscard]] std::optional<std::wstring> FullPath(const char* enginePath);

// A file so marked goes when the last handle of it is closed, and until then keeps its name.
void MarkForDeletion(HANDLE file, BOOL isMarked) noexcept;

enum class RenameKind {
  ToFreeName,
  Plain,     // over a file that nobody has open
  OverOpen,  // over any file; systems before Windows 10 refuse
};
// REQUIRES: the file was opened with the right to delete it.
bool RenameByHandle(HANDLE file, const std::wstring& fullPath, RenameKind kind);

}  // namespace tavimo::platform
