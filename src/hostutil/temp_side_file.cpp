#include "hostutil/temp_side_file.h"

#include "hostutil/file_utilities.h"
#include "platform/utility.h"

namespace tavimo::hostutil {

namespace {
constexpr std::size_t kLongestRecordingPath = 199;
constexpr std::size_t kLongestFileName = 99;
}  // namespace

bool DeriveSidePaths(std::string_view recordingPath, std::string_view extension, SidePaths& paths) noexcept {
  const std::string_view name = recordingPath.substr(recordingPath.rfind('\\') + 1);
  if (recordingPath.empty() || recordingPath.size() > kLongestRecordingPath || name.size() > kLongestFileName) {
    return false;
  }
  return paths.working.Assign(std::string_view("temp\\"), name.substr(0, name.rfind('.')), extension) &&
         paths.beside.Assign(recordingPath.substr(0, recordingPath.rfind('.')), extension);
}

bool EnsureSideFile(const char* recordingPath, std::string_view extension) noexcept {
  SidePaths paths;
  if (!DeriveSidePaths(core::TextOf(recordingPath), extension, paths)) return false;
  const char* working = paths.working.CString();
  if (FileExists(working) && platform::IsSameTimeFiles(recordingPath, working)) return true;
  if (!FileExists(paths.beside.CString())) return false;
  // Files on a disc are read-only, and a copy is as read-only as its source: it would bar the way for the next disc's.
  platform::ResetAttributes(working);
  platform::CopyFileOver(paths.beside.CString(), working);
  platform::ResetAttributes(working);
  return true;
}

}  // namespace tavimo::hostutil
