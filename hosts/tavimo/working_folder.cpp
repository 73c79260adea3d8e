#include "working_folder.h"

#include "content_hash.h"
#include "refusal.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kReadableNameBytes = 60;  // with the hash far below what any file system allows

std::string HashOf(const fs::path& identity) {
  const std::string name = Utf8(identity);
  return ContentHash(name.data(), name.size());
}

void Link(const fs::path& target, const fs::path& link) {
  std::error_code error;
  fs::remove(link, error);
  MakeSecondName(target, link, error);
  if (error) {
    throw Refusal("the engine cannot take its name, and a second name cannot be made in " +
                  Readable(fs::current_path()) + " (" + ReasonOf(error) + "); rename it or move it up");
  }
}

}  // namespace

fs::path IdentityOf(const fs::path& recording) {
  const fs::path full = fs::absolute(recording).lexically_normal();
  std::error_code error;
  const fs::path folder = fs::weakly_canonical(full.parent_path(), error);
  return StoredSpelling(error ? full : folder / full.filename());
}

WorkingFolder::WorkingFolder(const fs::path& home, const fs::path& identity, Kind kind) : hash_(HashOf(identity)) {
  const fs::path name = PathFromUtf8(Shortened(Utf8(identity.stem()), kReadableNameBytes) + "-" + hash_);
  path_ = home / (kind == Kind::Lesson ? "lessons" : "scripts") / name;
  MakeFolder(path_);
  if (kind == Kind::Lesson) {
    for (const char* folder : {"temp", "tmpwav", "zud"}) MakeFolder(path_ / folder);
  }
  std::error_code error;
  previous_ = fs::current_path(error);
  fs::current_path(path_, error);
  if (error) throw Refusal("the working folder " + Readable(path_) + " cannot be entered (" + ReasonOf(error) + ")");
}

WorkingFolder::~WorkingFolder() {
  std::error_code ignored;
  fs::current_path(previous_.empty() ? path_.root_path() : previous_, ignored);
  for (const char* folder : {"temp", "zud", "pages"}) {
    if (fs::exists(path_ / folder, ignored) && !fs::is_empty(path_ / folder, ignored)) return;
  }
  for (const fs::path& link : madeLinks_) fs::remove(link, ignored);
  for (auto folder = madeFolders_.rbegin(); folder != madeFolders_.rend(); ++folder) fs::remove(*folder, ignored);
}

void WorkingFolder::MakeFolder(const fs::path& folder) {
  std::error_code error;
  if (folder.empty() || fs::is_directory(folder, error)) return;
  MakeFolder(folder.parent_path());
  if (fs::create_directory(folder, error)) madeFolders_.push_back(folder);
  if (!fs::is_directory(folder)) {
    throw Refusal("the working folder " + Readable(folder) + " cannot be made (" + ReasonOf(error) + ")");
  }
}

fs::path WorkingFolder::MakeAlias(const fs::path& identity) {
  MakeFolder(path_ / "alias");
  fs::path alias = fs::path("alias") / (hash_ + ".wav");
  Link(identity, alias);
  madeLinks_.push_back(path_ / alias);
  for (const char* extension : {".tmp", ".zud", ".jpg", ".bmp", ".gif", ".dib"}) {
    const fs::path beside = fs::path(identity).replace_extension(extension);
    const fs::path link = fs::path(alias).replace_extension(extension);
    std::error_code error;
    fs::remove(link, error);  // a second name may outlive the file
    if (!fs::exists(beside, error)) continue;
    Link(beside, link);
    madeLinks_.push_back(path_ / alias.parent_path() / (hash_ + extension));
  }
  return alias;
}

}  // namespace tavimo::host
