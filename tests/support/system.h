// What the tests take from the system they run on. Not for what belongs to one system alone: that is in folders of its name.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

namespace tavimo::tests {

// A new, empty folder for temporary files.
std::filesystem::path MakeFolderOfItsOwn();

// Sets a variable of the environment, or takes it away for null.
void SetVariable(const char* name, const char* value);

// How many files and other things of the system the process holds open.
std::size_t OpenHandleCount();

// What the longest tests do thousands of times they may do every so many times only: 1, or what TAVIMO_TEST_STRIDE says,
// for an emulator, where a call of the system's takes a hundred times as long. From 1 to 1000.
inline int Stride() {
  const char* stride = std::getenv("TAVIMO_TEST_STRIDE");
  return stride == nullptr ? 1 : std::clamp(std::atoi(stride), 1, 1000);
}

// A variable that has another value, or none, for the life of this object.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    SetVariable(name, value);
  }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable() { SetVariable(name_, before_ ? before_->c_str() : nullptr); }

 private:
  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace tavimo::tests
