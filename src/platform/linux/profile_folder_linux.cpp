// Where profiles without a folder lie on Linux; reading them is common/profile.cpp.
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "platform/linux/native_path.h"
#include "platform/profile.h"

namespace tavimo::platform {

namespace {

// The user's folder of settings; empty when the environment names none. A relative one counts as none.
std::string SettingsFolder() {
  const char* settings = std::getenv("XDG_CONFIG_HOME");
  if (settings != nullptr && *settings == '/') return settings;
  const char* home = std::getenv("HOME");
  return home != nullptr && *home == '/' ? std::string(home) + "/.config" : std::string();
}

}  // namespace

int GetProfileFolder(char* path, int size) noexcept try {
  if (path == nullptr || size < 1) return 0;
  path[0] = '\0';
  const std::string settings = SettingsFolder();
  if (settings.empty()) return 0;
  const std::optional<std::string> folder = EnginePath(settings + "/tavimo/");
  if (!folder || folder->size() >= static_cast<std::size_t>(size)) return 0;
  std::memcpy(path, folder->c_str(), folder->size() + 1);
  return static_cast<int>(folder->size());
} catch (...) {
  return 0;
}

}  // namespace tavimo::platform
