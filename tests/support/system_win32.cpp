// Implements system.h on Windows.
#include <windows.h>

#include <string>

#include "support/system.h"

namespace tavimo::tests {

std::filesystem::path MakeFolderOfItsOwn() {
  // Process numbers come again, and read-only files of a test stay where they are.
  static int made = 0;
  const std::string name = "tavimo-test-" + std::to_string(GetTickCount64()) + "-" + std::to_string(++made);
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / name;
  std::filesystem::create_directory(folder);
  return folder;
}

void SetVariable(const char* name, const char* value) { SetEnvironmentVariableA(name, value); }

std::size_t OpenHandleCount() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  return count;
}

}  // namespace tavimo::tests
