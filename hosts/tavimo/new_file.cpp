#include "new_file.h"

#include "refusal.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

// The name under which a file is written until it is whole. A link's target is replaced, not the link.
fs::path ResolvedPath(const fs::path& path) {
  std::error_code error;
  const bool isLink = fs::is_symlink(fs::symlink_status(path, error));
  const fs::path target = isLink ? fs::weakly_canonical(path, error) : path;
  return error ? path : target;
}

fs::path Beside(const fs::path& path) {
  const std::string name = Shortened(Utf8(path.filename()), 200);
  return path.parent_path() / PathFromUtf8("." + name + ".tavimo-new");
}

[[noreturn]] void Refuse(const fs::path& path, const std::error_code& error) {
  throw Refusal(Readable(path) + " cannot be written (" + error.message() + ")");
}

}  // namespace

NewFile::NewFile(const fs::path& path) : path_(ResolvedPath(path)), unfinished_(Beside(path_)) {
  stream_.open(unfinished_, std::ios::binary | std::ios::trunc);
  if (!stream_ || fs::is_directory(path_)) {
    throw Refusal(Readable(path) + " cannot be written; is there a folder to write it in?");
  }
}

NewFile::~NewFile() {
  std::error_code ignored;
  stream_.close();
  fs::remove(unfinished_, ignored);
}

void NewFile::Write(const void* bytes, std::size_t byteCount) {
  stream_.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(byteCount));
}

void NewFile::WriteAt(std::uint64_t offset, const void* bytes, std::size_t byteCount) {
  stream_.seekp(static_cast<std::streamoff>(offset));
  Write(bytes, byteCount);
}

bool NewFile::IsWhole() { return static_cast<bool>(stream_.flush()); }

void NewFile::PutInPlace() {
  const bool isWhole = IsWhole();
  stream_.close();
  if (!isWhole || !stream_) throw Refusal(Readable(path_) + " could not be written whole; is the disk full?");
  std::error_code error;
  if (time_ != fs::file_time_type::min()) fs::last_write_time(unfinished_, time_, error);
  if (!error) fs::rename(unfinished_, path_, error);
  if (error) Refuse(path_, error);
}

void PlaceCopy(const fs::path& finished, const fs::path& path) {
  const fs::path target = ResolvedPath(path);
  const fs::path unfinished = Beside(target);
  std::error_code error;
  fs::copy_file(finished, unfinished, fs::copy_options::overwrite_existing, error);
  if (!error) fs::last_write_time(unfinished, fs::last_write_time(finished), error);
  if (!error) FlushToDisk(unfinished);
  if (!error) fs::rename(unfinished, target, error);
  if (!error) return;
  std::error_code ignored;
  fs::remove(unfinished, ignored);
  Refuse(path, error);
}

void PlaceFile(const fs::path& finished, const fs::path& path) {
  std::error_code error;
  fs::rename(finished, ResolvedPath(path), error);
  if (!error) return;
  if (error != std::errc::cross_device_link) Refuse(path, error);
  PlaceCopy(finished, path);
  fs::remove(finished, error);
}

void CheckOutput(const fs::path& source, const fs::path& output, Existing existing) {
  std::error_code error;
  if (fs::equivalent(source, output, error)) throw Refusal("the output would replace it; name another file");
  if (existing == Existing::Keep && fs::exists(output, error)) {
    throw Refusal(Readable(output) + " is there already; --force replaces it");
  }
}

}  // namespace tavimo::host
