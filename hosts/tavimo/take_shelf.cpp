#include "take_shelf.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <tuple>

#include "refusal.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kShelf = "takes";
constexpr const char* kRecovered = "recovered";
constexpr std::size_t kMomentLength = 19;  // 2026-11-23_19-05-30

fs::path FolderOf(int sentence) {
  if (sentence == 0) return fs::path(kShelf) / kRecovered;
  std::array<char, 12> name{};
  std::snprintf(name.data(), name.size(), "%03d", sentence);
  return fs::path(kShelf) / name.data();
}

// None for folders that are not of this shelf.
std::optional<int> SentenceOf(const fs::path& folder) {
  const std::string name = Utf8(folder.filename());
  if (name == kRecovered) return 0;
  int sentence = 0;
  const auto [stop, error] = std::from_chars(name.data(), name.data() + name.size(), sentence);
  if (error != std::errc() || stop != name.data() + name.size() || FolderOf(sentence) != folder) return {};
  return sentence;
}

std::string Stamp(fs::file_time_type time) {
  const auto moment = std::chrono::file_clock::to_sys(time);
  const std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(moment));
  std::array<char, 40> text{};
  const std::tm* local = std::localtime(&seconds);
  if (local == nullptr || std::strftime(text.data(), text.size(), "%Y-%m-%d_%H-%M-%S", local) == 0) return "undated";
  return text.data();
}

// Older ones first; "…-10" behind "…-9".
bool IsOlder(const Take& left, const Take& right) {
  const auto key = [](const Take& take) {
    const std::string stem = Utf8(take.file.stem());
    return std::tuple(stem.substr(0, kMomentLength), stem.size(), stem);
  };
  return key(left) < key(right);
}

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

std::string Take::Moment() const {
  std::string text = Utf8(file.stem()).substr(0, kMomentLength);
  if (text.size() != kMomentLength) return text;
  text[10] = ' ';
  text[13] = text[16] = ':';
  return text;
}

fs::path NewTakeFile(int sentence, fs::file_time_type time, const char* extension) {
  const fs::path folder = FolderOf(sentence);
  const std::string stamp = Stamp(time);
  fs::path file = folder / (stamp + extension);
  for (int number = 2; fs::exists(fs::symlink_status(file)); ++number) {
    file = folder / (stamp + "-" + std::to_string(number) + extension);
  }
  return file;
}

void MakeRoomForTake(int sentence) {
  std::error_code error;
  fs::create_directories(FolderOf(sentence), error);
  if (error)
    throw Refusal("its takes cannot be kept in " + Readable(fs::current_path() / kShelf) + " (" + error.message() +
                  ")");
}

std::vector<Take> ListTakes() {
  std::vector<std::pair<int, fs::path>> folders;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator(kShelf, error)) {
    const auto sentence = SentenceOf(entry.path());
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
