// One recording, opened: its header, its working folder, the name the engine knows it by, and its study file. The
// current directory is the working folder while a session lives, so only one may live at a time, and every path of the
// person's must be absolute before.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "edit_journal.h"
#include "wave_header.h"
#include "working_folder.h"

namespace tavimo::host {

class LessonSession {
 public:
  // A Refusal, and nothing left behind, when the engine cannot work with the recording. A change to the recording that
  // a kill interrupted is taken back, with a line on standard error.
  LessonSession(const std::filesystem::path& home, const std::filesystem::path& recording);

  [[nodiscard]] const std::filesystem::path& Recording() const { return recording_; }
  [[nodiscard]] const WaveHeader& Header() const { return header_; }
  [[nodiscard]] const WorkingFolder& Folder() const { return *folder_; }
  [[nodiscard]] const std::string& EngineName() const { return engineName_; }

  // The working digest where the engine looks for it, as a native path and by the engine's name.
  [[nodiscard]] const std::filesystem::path& DigestPath() const { return digestPath_; }
  [[nodiscard]] const std::string& DigestEngineName() const { return digestEngineName_; }

  // For who has just kept others from changing the recording. A Refusal when it cannot be worked with any more.
  void ReadHeaderAgain();

  // The study file where the engine writes it. One beside the recording may be what it reads.
  [[nodiscard]] std::filesystem::path StudyPath() const;
  [[nodiscard]] std::string StudyEngineName() const;

  // What changes when sentences are deleted.
  [[nodiscard]] LessonFiles Files() const { return {recording_, StudyPath(), digestPath_}; }

  // The sentence starts of the study file, and its bookmarks into the engine's memory; none without a study file.
  std::vector<std::uint32_t> LoadStudyFile();

  // Whether starts can be those of this recording: two or more, rising, all within the sound.
  [[nodiscard]] bool CanBeSentences(const std::vector<std::uint32_t>& starts) const;

  // Stores the starts with the bookmarks in the engine's memory, and reads both back; a Refusal when the starts did not
  // reach the disk. The engine keeps no single start.
  void StoreStudyFile(const std::vector<std::uint32_t>& starts);

 private:
  std::filesystem::path recording_;
  WaveHeader header_;
  std::optional<WorkingFolder> folder_;
  std::string engineName_;
  std::filesystem::path digestPath_;
  std::string digestEngineName_;

  void NameFiles();
  void FinishInterruptedEdit();
};

// The engine's name of a recording, where it has one that every export takes; none where an alias is needed.
[[nodiscard]] std::optional<std::string> UsableEngineName(const std::filesystem::path& recording);

}  // namespace tavimo::host
