// The takes of a lesson: what the learner said, kept as dated wave files for each sentence.
//
//   takes/003/2026-11-23_19-05-30.wav      after sentence 3; a second one of that moment is …-2.wav
//   takes/recovered/…                      found without the sentence it belongs to
//
// Names are relative to the lesson's working folder, which is the current directory. No file that lies here is ever
// written to again.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tavimo::host {

inline constexpr const char* kTakeShelf = "takes";
inline constexpr int kLastTakeSentence = 999'999;

struct Take {
  int sentence = 0;  // 0: recovered
  int number = 0;    // from 1, the oldest of its sentence
  std::filesystem::path file;
};

// The folder for takes of a sentence, and back; 0 is the folder of those recovered. None for folders that are not of this
// shelf.
[[nodiscard]] std::filesystem::path TakeFolder(int sentence);
[[nodiscard]] std::optional<int> SentenceOfFolder(const std::filesystem::path& folder);

// A name that no file has yet. The extension starts with a point.
[[nodiscard]] std::filesystem::path NewTakeFile(int sentence, std::filesystem::file_time_type time,
                                                const char* extension);

// Makes the folder for takes of a sentence, so that a disk that is full by then cannot keep a take from its place.
void MakeRoomForTake(int sentence);
[[nodiscard]] bool HasRoomForTake(int sentence);

// In the order of sentences, those recovered last, and of time.
[[nodiscard]] std::vector<Take> ListTakes();

[[nodiscard]] bool HasTake(int sentence);

// The take of that number; without one the newest, without a sentence the newest of the lesson. A Refusal where there is
// none.
[[nodiscard]] Take ChooseTake(std::optional<int> sentence, std::optional<int> number);

}  // namespace tavimo::host
