// A folder of its own for a test, made the current directory while the test runs, with the engine's working folders.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tavimo::tests {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

class ScratchFolder {
 public:
  ScratchFolder();  // makes temp, tmpwav and zud in it
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder();

  [[nodiscard]] const std::filesystem::path& Root() const { return root_; }

 private:
  std::filesystem::path root_;
  std::filesystem::path previous_;
};

// Native paths, relative to the current directory or absolute.
void WriteBytes(const std::filesystem::path& path, const Bytes& bytes);
void WriteText(const std::filesystem::path& path, std::string_view text);
Bytes ReadBytes(const std::filesystem::path& path);  // empty when the file is missing
std::string ReadText(const std::filesystem::path& path);
bool Exists(const std::filesystem::path& path);

// Last-write times in the finest steps that the system keeps: 1 ns, or 100 ns on Windows. The C++ library's own know whole
// seconds alone there.
std::int64_t WriteTimeOf(const char* path);
void SetWriteTime(const char* path, std::int64_t time);

// The names in a folder, sorted; shows what a test left behind.
std::vector<std::string> NamesIn(const std::filesystem::path& folder);

}  // namespace tavimo::tests
