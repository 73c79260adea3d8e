#include "support/scratch_folder.h"

#include <algorithm>
#include <fstream>

#include "platform/files.h"
#include "support/system.h"

namespace tavimo::tests {

ScratchFolder::ScratchFolder() : root_(MakeFolderOfItsOwn()), previous_(fs::current_path()) {
  fs::current_path(root_);
  for (const char* folder : {"temp", "tmpwav", "zud"}) fs::create_directory(folder);
}

ScratchFolder::~ScratchFolder() {
  fs::current_path(previous_);
  std::error_code ignored;
  fs::remove_all(root_, ignored);
}

void WriteBytes(const fs::path& path, const Bytes& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void WriteText(const fs::path& path, std::string_view text) { WriteBytes(path, Bytes(text.begin(), text.end())); }

Bytes ReadBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  if (!in) return {};
  Bytes bytes(static_cast<std::size_t>(in.tellg()));
  in.seekg(0);
  in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

std::string ReadText(const fs::path& path) {
  const Bytes bytes = ReadBytes(path);
  return {bytes.begin(), bytes.end()};
}

bool Exists(const fs::path& path) { return fs::exists(path); }

std::int64_t WriteTimeOf(const char* path) {
  platform::FileTime time;
  return platform::GetLastWriteTime(path, time) ? time.value : 0;
}

void SetWriteTime(const char* path, std::int64_t time) { static_cast<void>(platform::SetLastWriteTime(path, {time})); }

std::vector<std::string> NamesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace tavimo::tests
