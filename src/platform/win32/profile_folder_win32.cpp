// Where profiles without a folder lie on Windows; reading them is common/profile.cpp.
#include <cstring>
#include <optional>
#include <string>

#include "platform/profile.h"
#include "platform/win32/system.h"
#include "platform/win32/wide_text.h"

namespace tavimo::platform {

int GetProfileFolder(char* path, int size) noexcept try {
  if (path == nullptr || size < 1) return 0;
  path[0] = '\0';
  wchar_t windows[MAX_PATH];
  const UINT length = GetWindowsDirectoryW(windows, MAX_PATH);
  if (length == 0 || length >= MAX_PATH) return 0;
  std::optional<std::string> folder = GbkFromWide({windows, length});
  if (!folder) return 0;
  if (folder->back() != '\\') *folder += '\\';
  if (folder->size() >= static_cast<std::size_t>(size)) return 0;
  std::memcpy(path, folder->c_str(), folder->size() + 1);
  return static_cast<int>(folder->size());
} catch (...) {
  return 0;
}

}  // namespace tavimo::platform
