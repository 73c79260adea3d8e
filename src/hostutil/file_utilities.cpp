#include "hostutil/file_utilities.h"

#include "core/fixed_text.h"

namespace tavimo::hostutil {

using core::TextOf;

namespace {
constexpr std::size_t kLongestPath = 259;  // the platform's limit of 260 with the terminating zero
constexpr std::size_t kLongestDiscPath = 39;
constexpr std::size_t kLongestRelativePath = 36;
constexpr int kDriveCount = 26;
}  // namespace

std::int32_t StrongCopyFile(const char* toFolder, const char* pattern, const char* fromFolder) noexcept {
  core::FixedText<kLongestPath> source;
  core::FixedText<kLongestPath> target;
  if (!source.Assign(TextOf(fromFolder), TextOf(pattern))) return -1;
  platform::DirectorySearch search(source.CString());
  const char* name = search.Next();
  if (name == nullptr) return -1;
  for (; name != nullptr; name = search.Next()) {
    const std::string_view entry = name;
    if (source.Assign(TextOf(fromFolder), entry) && target.Assign(TextOf(toFolder), entry)) {
      platform::CopyFileOver(source.CString(), target.CString());
    }
  }
  return 1;
}

std::int32_t FindCdRomDrive(const char* relativePath) noexcept {
  const std::string_view relative = TextOf(relativePath);
  if (relative.empty() || relative.size() > kLongestRelativePath) return -1;
  for (int drive = 0; drive < kDriveCount; ++drive) {
    if (platform::GetDriveKind(drive) != platform::DriveKind::CdRom) continue;
    const char root[] = {static_cast<char>('A' + drive), ':', '\\', '\0'};
    core::FixedText<kLongestDiscPath> path;
    if (path.Assign(std::string_view(root), relative) && FileExists(path.CString())) return drive;
  }
  return -1;
}

}  // namespace tavimo::hostutil
