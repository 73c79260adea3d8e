// Directory search over POSIX: listing, matching, order. Where a folder lies and how its name is stored is
// native_path.cpp.
#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/linux/native_path.h"
#include "platform/text.h"

namespace tavimo::platform {

namespace {

// The entries found, in UTF-8, and which of them comes next.
struct Search {
  std::vector<std::string> names;
  std::size_t next = 0;
};

// The index behind the UTF-8 character at an index.
std::size_t NextCharacter(std::string_view text, std::size_t index) {
  do ++index;
  while (index < text.size() && (static_cast<unsigned char>(text[index]) & 0xC0) == 0x80);
  return index;
}

// "*" stands for any run of characters, "?" for one, or for none where a part of the name ends (at a dot and at the end).
bool MatchesWhole(std::string_view pattern, std::string_view name) {
  std::size_t p = 0;
  std::size_t n = 0;
  std::optional<std::size_t> lastStar;
  std::size_t starEnd = 0;  // where the run of the last star ends in the name
  while (p < pattern.size() || n < name.size()) {
    const char wanted = p < pattern.size() ? pattern[p] : '\0';
    if (wanted == '*') {
      lastStar = p++;
      starEnd = n;
    } else if (wanted == '?') {
      if (n < name.size() && name[n] != '.') n = NextCharacter(name, n);
      ++p;
    } else if (n < name.size() && p < pattern.size() && FoldedLetter(wanted) == FoldedLetter(name[n])) {
      ++p;
      ++n;
    } else {
      if (!lastStar || starEnd >= name.size()) return false;
      starEnd = NextCharacter(name, starEnd);
      n = starEnd;
      p = *lastStar + 1;
    }
  }
  return true;
}

// A name without a dot counts as one that ends in a dot: "*.*" and "name.*" find it.
bool Matches(std::string_view pattern, const std::string& name) {
  if (MatchesWhole(pattern, name)) return true;
  return name.find('.') == std::string::npos && MatchesWhole(pattern, name + '.');
}

bool IsDotEntry(std::string_view name) { return name == "." || name == ".."; }

bool ComesBefore(const std::string& left, const std::string& right) {
  if (IsDotEntry(left) != IsDotEntry(right)) return IsDotEntry(left);
  const auto isLess = [](char a, char b) {
    return static_cast<unsigned char>(FoldedLetter(a)) < static_cast<unsigned char>(FoldedLetter(b));
  };
  if (std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(), isLess)) return true;
  if (std::lexicographical_compare(right.begin(), right.end(), left.begin(), left.end(), isLess)) return false;
  return left < right;
}

std::vector<std::string> NamesMatching(const NativeLocation& place) {
  std::vector<std::string> names;
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(place.folder.c_str()), closedir);
  if (!listing) return names;
  while (const dirent* entry = readdir(listing.get())) {
    if (Matches(place.name, entry->d_name)) names.emplace_back(entry->d_name);
  }
  std::sort(names.begin(), names.end(), ComesBefore);
  return names;
}

// Without a wildcard nothing is listed: there is one entry or none.
std::vector<std::string> NameOf(const char* path) {
  const std::optional<std::string> native = NativePath(path);
  struct stat status {};
  if (!native || lstat(native->c_str(), &status) != 0) return {};
  return {native->substr(native->rfind('/') + 1)};
}

// Null when nothing can match.
Search* StartSearch(const char* pattern) noexcept try {
  const std::optional<NativeLocation> place = LocateNative(pattern);
  if (!place || place->name.empty()) return nullptr;
  const bool hasWildcard = place->name.find_first_of("*?") != std::string::npos;
  return new Search{hasWildcard ? NamesMatching(*place) : NameOf(pattern)};
} catch (...) {
  return nullptr;
}

}  // namespace

DirectorySearch::DirectorySearch(const char* pattern) noexcept : search_(StartSearch(pattern)) {}

DirectorySearch::~DirectorySearch() { delete static_cast<Search*>(search_); }

const char* DirectorySearch::Next() noexcept {
  auto* search = static_cast<Search*>(search_);
  while (search != nullptr && search->next < search->names.size()) {
    const std::string& name = search->names[search->next++];
    // A name that no engine path can spell is no entry of the engine's.
    if (name.find('\\') != std::string::npos) continue;
    if (GbkFromUtf8(name, name_.data(), name_.size()) > 0) return name_.data();
  }
  return nullptr;
}

bool EntryExists(const char* path) noexcept { return DirectorySearch(path).Next() != nullptr; }

}  // namespace tavimo::platform
