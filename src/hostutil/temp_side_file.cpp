#include "digest/digest_paths.h"

#include "hostutil/file_utilities.h"
#include "platform/utility.h"

namespace tavimo::digest {

namespace {
constexpr std::size_t kLongestRecordingPath = 199;
constexpr std::size_t kLongestFileName = 99;
}  // namespace

bool DeriveDigestPaths(std::string_view recordingPath, DigestPaths& paths) noexcept {
  const std::string_view name = recordingPath.substr(recordingPath.rfind('\\') + 1);
  if (recordingPath.empty() || recordingPath.size() > kLongestRecordingPath || name.size() > kLongestFileName) {
    return false;
  }
  return paths.working.Assign(std::string_view("temp\\"), name.substr(0, name.rfind('.')), std::string_view(".tmp")) &&
         paths.beside.Assign(recordingPath.substr(0, recordingPath.rfind('.')), std::string_view(".tmp"));
}

bool EnsureDigest(const char* recordingPath) noexcept {
  DigestPaths paths;
  if (!DeriveDigestPaths(core::TextOf(recordingPath), paths)) return false;
  const char* working = paths.working.CString();
  if (hostutil::FileExists(working) && platform::IsSameTimeFiles(recordingPath, working)) return true;
  if (!hostutil::FileExists(paths.beside.CString())) return false;
  platform::CopyFileOver(paths.beside.CString(), working);
  return true;
}

}  // namespace tavimo::digest
