// Which recordings a person means who names a lesson: a recording, its name without ".wav", sound of another kind, or a
// folder of lessons.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tavimo::host {

// The recording of that name: as given, or with ".wav" where only that is there.
[[nodiscard]] std::filesystem::path NamedRecording(const std::filesystem::path& name);

// A recording to take, or why there is none.
struct LessonRecording {
  std::filesystem::path file;
  std::string problem;  // empty: there is one
};

// The recordings of a lesson or a folder of lessons, by name; a learner's voice beside one (NAME.learner.wav) is none.
// Sound that the engine does not take becomes a recording beside it, as tavimo import makes it, where there is none yet.
[[nodiscard]] std::vector<LessonRecording> LessonRecordings(const std::filesystem::path& name);

// A file beside a recording with this extension, in whatever case its name is written; for a recording that was imported
// also one of its source's name.
[[nodiscard]] std::optional<std::filesystem::path> FileBeside(const std::filesystem::path& recording,
                                                              const std::string& extension);

}  // namespace tavimo::host
