// Implements engine_path.h: the system's own paths, with backslashes and in GBK.
#include "platform/common/engine_path.h"

#include <algorithm>

#include "platform/common/guarded.h"
#include "platform/win32/system.h"
#include "platform/win32/wide_text.h"

namespace tavimo::platform {

namespace {

// A path that begins at the root of the current drive gets the drive's letter.
std::wstring WithDrive(std::wstring path) {
  const bool isRooted = path[0] == L'\\' && (path.size() == 1 || path[1] != L'\\');
  wchar_t current[MAX_PATH];
  if (!isRooted || GetFullPathNameW(L".", MAX_PATH, current, nullptr) == 0 || current[1] != L':') return path;
  return std::wstring(current, 2) + path;
}

}  // namespace

std::optional<std::string> EnginePath(std::string_view nativePath) noexcept {
  return Guarded(std::optional<std::string>(), [&]() -> std::optional<std::string> {
    std::optional<std::wstring> path = WideFromUtf8(nativePath);
    if (!path || path->empty()) return std::nullopt;
    std::replace(path->begin(), path->end(), L'/', L'\\');
    return GbkFromWide(WithDrive(std::move(*path)));
  });
}

}  // namespace tavimo::platform
