#include "take_moves.h"

#include <algorithm>
#include <optional>

#include "system.h"
#include "take_shelf.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

struct SentenceFolder {
  int sentence = 0;  // 0: recovered ones, which no deletion touches
  fs::path folder;
};

// A folder that cannot be listed is a failure here: takes that are not seen would be lost.
std::vector<SentenceFolder> FoldersIn(const fs::path& shelf) {
  std::vector<SentenceFolder> folders;
  if (!fs::exists(shelf)) return folders;
  for (const auto& entry : fs::directory_iterator(shelf)) {
    if (const auto sentence = SentenceOfFolder(entry.path())) folders.push_back({*sentence, entry.path()});
  }
  return folders;
}

// None for a sentence that is deleted.
std::optional<int> NumberAfter(int sentence, const std::vector<int>& deleted) {
  const auto behind = std::lower_bound(deleted.begin(), deleted.end(), sentence);
  if (behind != deleted.end() && *behind == sentence) return {};
  return sentence - static_cast<int>(behind - deleted.begin());
}

int NumberBefore(int sentence, const std::vector<int>& deleted) {
  if (sentence == 0) return 0;
  for (const int gone : deleted) {
    if (gone > sentence) break;
    ++sentence;
  }
  return sentence;
}

// A second name costs no room, and no take is ever written to; where the file system has none, a copy.
void GiveSecondName(const fs::path& file, const fs::path& name) {
  std::error_code error;
  fs::create_hard_link(file, name, error);
  if (error) fs::copy_file(file, name);
}

void Move(const fs::path& from, const fs::path& to) {
  std::error_code error;
  Rename(from, to, error);
  if (error) throw fs::filesystem_error("cannot rename", from, to, error);
}

// What is not there yet; what has the same name is the same take.
void BringBackNewer(const fs::path& newer, const fs::path& older) {
  fs::create_directories(older);
  for (const auto& entry : fs::directory_iterator(newer)) {
    const fs::path file = older / entry.path().filename();
    if (!fs::exists(file)) Move(entry.path(), file);
  }
}

}  // namespace

void MoveTakesAway(const fs::path& backup, const std::vector<int>& deletedSentences) {
  if (!fs::exists(kTakeShelf)) fs::create_directory(kTakeShelf);
  Move(kTakeShelf, backup / kTakeShelf);
  for (const SentenceFolder& kept : FoldersIn(backup / kTakeShelf)) {
    const auto number = NumberAfter(kept.sentence, deletedSentences);
    if (!number) continue;
    const fs::path folder = TakeFolder(*number);
    fs::create_directories(folder);
    for (const auto& entry : fs::directory_iterator(kept.folder)) {
      if (entry.is_regular_file()) GiveSecondName(entry.path(), folder / entry.path().filename());
    }
  }
}

void BringTakesBack(const fs::path& backup, const std::vector<int>& deletedSentences) {
  const fs::path older = backup / kTakeShelf;
  if (!fs::exists(older)) return;
  for (const SentenceFolder& newer : FoldersIn(kTakeShelf)) {
    const int number = NumberBefore(newer.sentence, deletedSentences);
    BringBackNewer(newer.folder, older / TakeFolder(number).filename());
    fs::remove_all(newer.folder);
  }
  if (fs::exists(kTakeShelf)) BringBackNewer(kTakeShelf, older);  // what the person put there
  fs::remove_all(kTakeShelf);
  Move(older, kTakeShelf);
}

}  // namespace tavimo::host
