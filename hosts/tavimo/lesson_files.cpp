#include "lesson_files.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <set>

#include "importer.h"
#include "refusal.h"
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

fs::path ImportBeside(const fs::path& source) {
  const fs::path recording = fs::path(source).replace_extension(".wav");
  std::error_code error;
  if (fs::exists(recording, error)) return recording;
  Import({source, recording, Existing::Keep, {}, {}});
  std::cout << Readable(recording.filename()) << ": imported from " << Readable(source.filename()) << '\n';
  return recording;
}

std::vector<fs::path> RecordingsIn(const fs::path& folder) {
  std::set<fs::path> recordings;
  std::vector<fs::path> others;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!entry.is_regular_file() || IsLearnersVoice(entry.path())) continue;
    if (LowerCaseExtension(entry.path()) == ".wav") recordings.insert(entry.path());
    if (IsOtherKind(entry.path())) others.push_back(entry.path());
  }
  std::sort(others.begin(), others.end());
  for (const fs::path& other : others) recordings.insert(ImportBeside(other));
  if (recordings.empty()) throw Refusal("it is a folder, and there is no recording in it");
  return {recordings.begin(), recordings.end()};
}

}  // namespace

fs::path NamedRecording(const fs::path& name) {
  std::error_code error;
  fs::path recording = name;
  recording += ".wav";
  return !fs::exists(name, error) && fs::exists(recording, error) ? recording : name;
}

std::vector<fs::path> LessonRecordings(const fs::path& name) {
  std::error_code error;
  if (fs::is_directory(name, error)) return RecordingsIn(name);
  if (IsOtherKind(name) && fs::exists(name, error)) return {ImportBeside(name)};
  return {NamedRecording(name)};
}

std::optional<fs::path> FileBeside(const fs::path& recording, const std::string& extension) {
  const fs::path expected = fs::path(recording).replace_extension(extension);
  std::error_code error;
  if (fs::exists(expected, error)) return expected;
  const std::string name = LowerCase(Utf8(expected.filename()));
  for (const auto& entry : fs::directory_iterator(recording.parent_path(), error)) {
    if (LowerCase(Utf8(entry.path().filename())) == name) return entry.path();
  }
  return {};
}

}  // namespace tavimo::host
