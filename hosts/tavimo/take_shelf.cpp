#include "take_shelf.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "moment.h"
#include "refusal.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kRecovered = "recovered";

bool IsOlder(const Take& left, const Take& right) { return IsOlderName(left.file, right.file); }

std::vector<Take> TakesIn(const fs::path& folder, int sentence) {
  std::vector<Take> takes;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(folder, error)) {
    if (entry.path().extension() == ".wav") takes.push_back({sentence, 0, entry.path()});
  }
  std::sort(takes.begin(), takes.end(), IsOlder);
  for (std::size_t i = 0; i < takes.size(); ++i) takes[i].number = static_cast<int>(i) + 1;
  return takes;
}

}  // namespace

fs::path TakeFolder(int sentence) {
  if (sentence == 0) return fs::path(kTakeShelf) / kRecovered;
  std::array<char, 12> name{};
  std::snprintf(name.data(), name.size(), "%03d", sentence);
  return fs::path(kTakeShelf) / name.data();
}

std::optional<int> SentenceOfFolder(const fs::path& folder) {
  const std::string name = Utf8(folder.filename());
  if (name == kRecovered) return 0;
  int sentence = 0;
  const auto [stop, error] = std::from_chars(name.data(), name.data() + name.size(), sentence);
  if (error != std::errc() || stop != name.data() + name.size() || TakeFolder(sentence).filename() != name) return {};
  return sentence;
}

fs::path NewTakeFile(int sentence, fs::file_time_type time, const char* extension) {
  return UnusedDatedName(TakeFolder(sentence), time, extension);
}

bool HasRoomForTake(int sentence) {
  std::error_code error;
  fs::create_directories(TakeFolder(sentence), error);
  return fs::is_directory(TakeFolder(sentence), error);
}

void MakeRoomForTake(int sentence) {
  std::error_code error;
  fs::create_directories(TakeFolder(sentence), error);
  if (error)
    throw Refusal("its takes cannot be kept in " + Readable(fs::current_path() / kTakeShelf) + " (" + ReasonOf(error) +
                  ")");
}

std::vector<Take> ListTakes() {
  std::vector<std::pair<int, fs::path>> folders;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(kTakeShelf, error)) {
    const auto sentence = SentenceOfFolder(entry.path());
    if (sentence) folders.emplace_back(*sentence == 0 ? kLastTakeSentence + 1 : *sentence, entry.path());
  }
  std::sort(folders.begin(), folders.end());
  std::vector<Take> takes;
  for (const auto& [sentence, folder] : folders) {
    const std::vector<Take> here = TakesIn(folder, sentence > kLastTakeSentence ? 0 : sentence);
    takes.insert(takes.end(), here.begin(), here.end());
  }
  return takes;
}

bool HasTake(int sentence) {
  const std::vector<Take> takes = ListTakes();
  return std::any_of(takes.begin(), takes.end(), [sentence](const Take& take) { return take.sentence == sentence; });
}

Take ChooseTake(std::optional<int> sentence, std::optional<int> number) {
  std::vector<Take> takes = ListTakes();
  std::erase_if(takes, [&](const Take& take) { return sentence && take.sentence != *sentence; });
  const std::string where = sentence ? "of sentence " + std::to_string(*sentence) : "of it";
  if (takes.empty()) throw Refusal("there is no take " + where + "; tavimo record makes one");
  if (!number) return *std::max_element(takes.begin(), takes.end(), IsOlder);
  const auto chosen =
      std::find_if(takes.begin(), takes.end(), [&](const Take& take) { return take.number == *number; });
  if (chosen == takes.end()) {
    throw Refusal("there is no take " + std::to_string(*number) + " " + where + "; the last is " +
                  std::to_string(takes.back().number));
  }
  return *chosen;
}

}  // namespace tavimo::host
