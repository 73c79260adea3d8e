#include "sentences/study_file.h"

#include "core/arithmetic.h"
#include "hostutil/file_utilities.h"
#include "sentences/start_table.h"

namespace tavimo::sentences {

using platform::FileStream;
using platform::OpenMode;
using platform::SeekFrom;

namespace {

constexpr std::string_view kExtension = ".zud";
constexpr std::string_view kFolder = "zud";

// The last of the given bytes in text, not looking at its first byte; npos when there is none.
std::size_t LastOf(std::string_view text, std::string_view bytes) noexcept {
  const std::size_t found = text.find_last_of(bytes);
  return found == 0 ? std::string_view::npos : found;
}

// Without its extension; a dot in a folder's name is none.
std::string_view Stem(std::string_view path) noexcept {
  const std::size_t found = LastOf(path, ".\\");
  return found != std::string_view::npos && path[found] == '.' ? path.substr(0, found) : path;
}

}  // namespace

bool DeriveStudyPaths(std::string_view recordingPath, StudyPaths& paths) noexcept {
  if (recordingPath.empty() || recordingPath.size() > kLongestStudyPath) return false;
  if (!paths.beside.Assign(Stem(recordingPath), kExtension)) return false;
  const std::string_view study = paths.beside.View();
  const std::size_t slash = LastOf(study, "\\");
  if (slash != std::string_view::npos) return paths.studyFolder.Assign(kFolder, study.substr(slash));
  const std::string_view separator = study.front() == '\\' ? "" : "\\";
  return paths.studyFolder.Assign(kFolder, separator, study);
}

std::int32_t CountStarts(const FileStream& file) noexcept {
  const std::int64_t startBytes = file.Length() - static_cast<std::int64_t>(kBookMarkTableBytes);
  return startBytes < 0 ? -1 : core::HoldToInt32(startBytes / 4);
}

std::int32_t OpenStudyFile(const StudyPaths& paths, FileStream& file) noexcept {
  file = FileStream::Open(paths.studyFolder.CString(), OpenMode::Read);
  if (!file.IsOpen()) file = FileStream::Open(paths.beside.CString(), OpenMode::Read);
  const std::int32_t count = CountStarts(file);
  if (count < 0) file.Close();
  return count;
}

void ReadStudyFile(FileStream& file, BookMarkTable& table, std::uint32_t* startsMs, std::int32_t count) noexcept {
  file.Seek(0, SeekFrom::Start);
  const auto bytes = table.Bytes();
  if (file.Read(bytes.data(), static_cast<std::int64_t>(bytes.size())) < 0) return;
  ReadStarts(file, startsMs, count);
}

void ReadValuePair(FileStream& file, std::int32_t index, std::uint32_t* first, std::uint32_t* second) noexcept {
  const std::int64_t offset = std::int64_t{index} * 4;
  if (file.Seek(offset, SeekFrom::Start) >= 0) ReadStarts(file, first, 1);
  if (file.Seek(offset + 4, SeekFrom::Start) >= 0) ReadStarts(file, second, 1);
  file.Seek(offset + 8, SeekFrom::Start);
}

bool StoreStudyFile(const StudyPaths& paths, const BookMarkTable& table, const std::uint32_t* startsMs,
                    std::int32_t count) noexcept {
  const char* path = paths.studyFolder.CString();
  const bool hasStarts = count >= 2;
  if (hasStarts && startsMs == nullptr) return false;
  if (hostutil::FileExists(path)) platform::ResetAttributes(path);
  if (!hasStarts && !table.HasAnyTime()) return platform::RemoveFile(path);
  StartTableWriter writer;
  if (!writer.Begin(path)) return false;
  writer.AddHeader(table.Bytes());
  if (hasStarts) writer.Add(startsMs, count);
  return writer.Finish(platform::ReplacementFile::Durability::Synced);
}

}  // namespace tavimo::sentences
