// What the tests take from the system they run on. Not for what belongs to one system alone: that is in folders of its name.
#pragma once

#include <cstddef>
#include <filesystem>

namespace tavimo::tests {

// A new, empty folder for temporary files.
std::filesystem::path MakeFolderOfItsOwn();

// Sets a variable of the environment, or takes it away for null.
void SetVariable(const char* name, const char* value);

// How many files and other things of the system the process holds open.
std::size_t OpenHandleCount();

}  // namespace tavimo::tests
