// The folder in which the engine keeps what belongs to one recording.
//
// The engine names its files after the recording's file name alone: a\unit1.wav and b\unit1.wav would share
// temp\unit1.tmp and zud\unit1.zud, and opening one lesson would cost the learner the bookmarks of the other. So every
// recording has a working folder of its own, with the engine's folders in it:
//
//   HOME/lessons/unit1-0123456789abcdef/temp  tmpwav  zud  alias
//
// A script has one too, HOME/scripts/unit1-0123456789abcdef/pages, whether there is a recording to it or not.
//
// The sixteen digits are a hash of the recording's full path. While a WorkingFolder lives, its folder is the current
// directory, which is what the engine's relative names refer to.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tavimo::host {

// The path by which a recording is known: absolute, its folder with links resolved, its own name as given.
[[nodiscard]] std::filesystem::path IdentityOf(const std::filesystem::path& recording);

class WorkingFolder {
 public:
  enum class Kind { Lesson, Script };

  // Makes what is missing and enters the folder; a Refusal when that cannot be done.
  WorkingFolder(const std::filesystem::path& home, const std::filesystem::path& identity, Kind kind = Kind::Lesson);
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

  // Goes back to the earlier current directory. Folders that this object made and nobody filled are removed again.
  ~WorkingFolder();

  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

  // Whether this is the recording's first time here.
  [[nodiscard]] bool IsNew() const { return !madeFolders_.empty(); }

  // A second, short name for a recording whose own name the engine cannot take: a link in the folder "alias", always
  // the same for the same recording, so that its digest and study file are found again. A digest, a study file and a
  // picture that lie beside the recording get one too. A relative path; a Refusal where the file system has no links.
  std::filesystem::path MakeAlias(const std::filesystem::path& identity);

 private:
  void MakeFolder(const std::filesystem::path& folder);

  std::filesystem::path path_;
  std::filesystem::path previous_;
  std::vector<std::filesystem::path> madeFolders_;
  std::vector<std::filesystem::path> madeLinks_;
  std::string hash_;
};

}  // namespace tavimo::host
