// Implements the directory search of files.h over the system's own, which knows the wildcards.
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/common/guarded.h"
#include "platform/files.h"
#include "platform/win32/file_calls.h"
#include "platform/win32/wide_text.h"

namespace tavimo::platform {

namespace {

// The entries found and which of them comes next.
struct Search {
  std::vector<std::wstring> names;
  std::size_t next = 0;
};

bool IsDotEntry(const std::wstring& name) { return name == L"." || name == L".."; }

// Not every file system lists its entries in order.
bool ComesBefore(const std::wstring& left, const std::wstring& right) {
  if (IsDotEntry(left) != IsDotEntry(right)) return IsDotEntry(left);
  return CompareStringOrdinal(left.c_str(), -1, right.c_str(), -1, TRUE) == CSTR_LESS_THAN;
}

// Null when nothing matches.
Search* StartSearch(const char* pattern) {
  const std::optional<std::wstring> path = WidePath(pattern);
  WIN32_FIND_DATAW entry;
  HANDLE listing = path ? FindFirstFileW(path->c_str(), &entry) : INVALID_HANDLE_VALUE;
  if (listing == INVALID_HANDLE_VALUE) return nullptr;
  auto search = std::make_unique<Search>();
  do search->names.emplace_back(entry.cFileName);
  while (FindNextFileW(listing, &entry));
  FindClose(listing);
  std::sort(search->names.begin(), search->names.end(), ComesBefore);
  return search.release();
}

}  // namespace

DirectorySearch::DirectorySearch(const char* pattern) noexcept
    : search_(Guarded<Search*>(nullptr, [&] { return StartSearch(pattern); })) {}

DirectorySearch::~DirectorySearch() { delete static_cast<Search*>(search_); }

const char* DirectorySearch::Next() noexcept {
  auto* search = static_cast<Search*>(search_);
  return Guarded<const char*>(nullptr, [&]() -> const char* {
    while (search != nullptr && search->next < search->names.size()) {
      // A name that no engine path can spell is no entry of the engine's.
      const std::optional<std::string> gbk = GbkFromWide(search->names[search->next++]);
      if (!gbk || gbk->size() >= name_.size()) continue;
      std::copy_n(gbk->c_str(), gbk->size() + 1, name_.data());
      return name_.data();
    }
    return nullptr;
  });
}

bool EntryExists(const char* path) noexcept { return DirectorySearch(path).Next() != nullptr; }

}  // namespace tavimo::platform
