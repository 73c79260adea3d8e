// Implements system.h on Linux.
#include <stdlib.h>

#include <iterator>

#include "support/system.h"

namespace tavimo::tests {

std::filesystem::path MakeFolderOfItsOwn() {
  std::string pattern = (std::filesystem::temp_directory_path() / "tavimo-test-XXXXXX").string();
  return mkdtemp(pattern.data());
}

void SetVariable(const char* name, const char* value) {
  if (value == nullptr) {
    unsetenv(name);
  } else {
    setenv(name, value, 1);
  }
}

std::size_t OpenHandleCount() {
  const std::filesystem::directory_iterator handles("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(handles), end(handles)));
}

}  // namespace tavimo::tests
