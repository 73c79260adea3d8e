#include "lesson_files.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <set>

#include "importer.h"
#include "refusal.h"
#include "system.h"
#include "text.h"
#include "wave_header.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, 8> kOtherKinds = {".mp3",  ".ogg", ".oga",  ".opus",
                                                         ".flac", ".aif", ".aiff", ".w64"};

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte; });
  return text;
}

std::string LowerCaseExtension(const fs::path& file) { return LowerCase(Utf8(file.extension())); }

bool IsOtherKind(const fs::path& file) {
  const std::string extension = LowerCaseExtension(file);
  return std::find(kOtherKinds.begin(), kOtherKinds.end(), extension) != kOtherKinds.end();
}

bool IsLearnersVoice(const fs::path& file) { return LowerCase(Utf8(file.stem())).ends_with(".learner"); }

// An import of before stays: sentences, takes and bookmarks belong to it.
fs::path ImportBeside(const fs::path& source) {
  const fs::path recording = RecordingFor(source);
  const std::string name = Readable(source.filename());
  std::error_code error;
  if (!fs::exists(recording, error)) {
    Import({source, recording, Existing::Keep, {}, {}});
    std::cout << Readable(recording.filename()) << ": imported from " << name << '\n';
  } else if (LastWriteTime(source, error) > LastWriteTime(recording, error)) {
    std::cerr << "tavimo: " << name << " is newer than " << Readable(recording.filename())
              << ", which is taken; tavimo import --force makes it anew\n";
  }
  return recording;
}

// A wave file that the engine does not take, such as one of 24 bits, is sound of another kind too.
LessonRecording Take(const fs::path& file) {
  std::error_code error;
  const bool isWave = LowerCaseExtension(file) == ".wav";
  if (!fs::is_regular_file(file, error) || (!isWave && !IsOtherKind(file))) return {file, {}};
  const std::string problem = isWave ? ReadWaveHeader(file).problem : "";
  if (isWave && problem.empty()) return {file, {}};
  try {
    return {ImportBeside(file), {}};
  } catch (const Refusal& refusal) {
    return {file, isWave ? problem : refusal.what()};
  }
}

std::vector<LessonRecording> RecordingsIn(const fs::path& folder) {
  std::set<fs::path> files;
  std::set<std::string> folders;
  for (const auto& entry : fs::directory_iterator(folder)) {
    std::error_code error;  // a link may lead nowhere
    const bool isHidden = Utf8(entry.path().filename()).starts_with('.');
    if (entry.is_directory(error) && !isHidden) folders.insert(Readable(entry.path().filename()));
    if (!entry.is_regular_file(error) || isHidden || IsLearnersVoice(entry.path())) continue;
    if (LowerCaseExtension(entry.path()) == ".wav" || IsOtherKind(entry.path())) files.insert(entry.path());
  }
  // An import and its source are one recording.
  std::map<fs::path, LessonRecording> recordings;
  for (const fs::path& file : files) {
    LessonRecording recording = Take(file);
    recordings.emplace(recording.file, std::move(recording));
  }
  std::vector<LessonRecording> all;
  all.reserve(recordings.size());
  for (const auto& [file, recording] : recordings) all.push_back(recording);
  if (!all.empty()) return all;
  std::string problem = "it is a folder, and there is no recording in it";
  for (const std::string& name : folders)
    problem += (name == *folders.begin() ? "; there are the folders " : ", ") + name;
  return {{folder, problem}};
}

}  // namespace

fs::path NamedRecording(const fs::path& name) {
  std::error_code error;
  fs::path recording = name;
  recording += ".wav";
  return !fs::exists(name, error) && fs::exists(recording, error) ? recording : name;
}

std::vector<LessonRecording> LessonRecordings(const fs::path& name) try {
  std::error_code error;
  if (fs::is_directory(name, error)) return RecordingsIn(name);
  return {Take(NamedRecording(name))};
} catch (const fs::filesystem_error& error) {
  return {{name, "its folder cannot be read (" + ReasonOf(error.code()) + ")"}};
}

std::optional<fs::path> FileBeside(const fs::path& recording, const std::string& extension) {
  const fs::path expected = fs::path(recording).replace_extension(extension);
  std::error_code error;
  if (fs::exists(expected, error)) return expected;
  const std::string name = LowerCase(Utf8(expected.filename()));
  const std::string sourceName = LowerCase(SourceStem(recording) + extension);
  std::optional<fs::path> ofSource;
  for (const auto& entry : fs::directory_iterator(recording.parent_path(), error)) {
    const std::string entryName = LowerCase(Utf8(entry.path().filename()));
    if (entryName == name) return entry.path();
    if (entryName == sourceName) ofSource = entry.path();
  }
  return ofSource;
}

}  // namespace tavimo::host
