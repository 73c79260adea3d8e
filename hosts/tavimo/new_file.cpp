#include "new_file.h"

#include "refusal.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

// The name under which a file is written until it is whole.
fs::path Beside(const fs::path& path) {
  const std::string name = Shortened(Utf8(path.filename()), 200);
  return path.parent_path() / PathFromUtf8("." + name + ".tavimo-new");
}

// A device or a folder is no file that another one could take the place of.
void RefuseUnlessPlain(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (fs::exists(status) && !fs::is_regular_file(status)) throw Refusal(Readable(path) + " is not a plain file");
}

// A link's target is replaced, not the link.
fs::path ResolvedPath(const fs::path& path) {
  std::error_code error;
  const bool isLink = fs::is_symlink(fs::symlink_status(path, error));
  const fs::path target = isLink ? fs::weakly_canonical(path, error) : path;
  RefuseUnlessPlain(target);
  return error ? path : target;
}

[[noreturn]] void Refuse(const fs::path& path, const std::error_code& error) {
  throw Refusal(Readable(path) + " cannot be written (" + ReasonOf(error) + ")");
}

}  // namespace

NewFile::NewFile(const fs::path& path) : path_(ResolvedPath(path)), unfinished_(Beside(path_)), lock_(unfinished_) {
  if (lock_.IsHeldElsewhere()) throw Refusal("another tavimo is writing " + Readable(path) + " right now");
  if (lock_.IsHeld()) stream_.open(unfinished_, std::ios::binary | std::ios::trunc);
  if (!stream_.is_open()) {
    std::error_code ignored;
    if (lock_.IsHeld()) fs::remove(unfinished_, ignored);
    throw Refusal(Readable(path) + " cannot be written; is there a folder to write it in?");
  }
}

NewFile::~NewFile() {
  std::error_code ignored;
  stream_.close();
  if (!isPlaced_) fs::remove(unfinished_, ignored);
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
  if (time_ != fs::file_time_type::min()) SetLastWriteTime(unfinished_, time_, error);
  if (!error) Rename(unfinished_, path_, error);
  if (error) Refuse(path_, error);
  isPlaced_ = true;
}

void PlaceCopy(const fs::path& finished, const fs::path& path) {
  const fs::path target = ResolvedPath(path);
  const fs::path unfinished = Beside(target);
  std::error_code error;
  fs::remove(unfinished, error);  // one C++ library takes what is there for the file itself, and copies nothing
  if (!error) fs::copy_file(finished, unfinished, error);
  if (!error) SetLastWriteTime(unfinished, LastWriteTime(finished, error), error);
  if (!error) FlushToDisk(unfinished);
  if (!error) Rename(unfinished, target, error);
  if (!error) return;
  std::error_code ignored;
  fs::remove(unfinished, ignored);
  Refuse(path, error);
}

void PlaceFile(const fs::path& finished, const fs::path& path) {
  std::error_code error;
  Rename(finished, ResolvedPath(path), error);
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
