// For libraries of the system that only some commands need: loading them with the program would cost every start of it.
// Defined where the program is built for such libraries.
#pragma once

namespace tavimo::host {

// Null where the library or the function is missing. It is never unloaded.
[[nodiscard]] void* FindInLibrary(const char* library, const char* function);

// While it lives nothing that a library prints on standard error is seen: decoders talk to programmers there.
class QuietErrors {
 public:
  QuietErrors();
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors();

 private:
  int errors_;
};

}  // namespace tavimo::host
