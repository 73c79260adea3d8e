// Implements file_calls.h.
#include "platform/win32/file_calls.h"

#include <cstdio>
#include <cstring>
#include <iterator>
#include <vector>

#include "platform/win32/wide_text.h"

namespace tavimo::platform {

std::optional<std::wstring> FullPath(const char* enginePath) {
  const std::optional<std::wstring> wide = WidePath(enginePath);
  if (!wide) return std::nullopt;
  std::wstring full(GetFullPathNameW(wide->c_str(), 0, nullptr, nullptr), L'\0');
  const DWORD length = GetFullPathNameW(wide->c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
  full.resize(length);
  return length == 0 || full.back() == L'\\' ? std::nullopt : std::optional(full);
}

std::wstring NameBeside(const std::wstring& fullPath, const wchar_t* ending) {
  std::uint32_t hash = 0x811C9DC5;  // FNV-1a
  for (const wchar_t unit : fullPath) hash = (hash ^ unit) * 0x01000193;
  wchar_t name[48];
  std::swprintf(name, std::size(name), L".tavimo-%08x-%x.%ls", hash, static_cast<unsigned>(GetCurrentProcessId()),
                ending);
  return fullPath.substr(0, fullPath.rfind(L'\\') + 1) + name;
}

void MarkForDeletion(HANDLE file, BOOL isMarked) noexcept {
  FILE_DISPOSITION_INFO disposition{};
  disposition.DeleteFile = static_cast<BOOLEAN>(isMarked);
  SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition);
}

bool RenameByHandle(HANDLE file, const std::wstring& fullPath, RenameKind kind) {
  // Newer than the headers this layer is built against.
  constexpr auto kRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
  constexpr DWORD kReplaceIfThere = 1;
  constexpr DWORD kOpenFilesStayReadable = 2;
  const bool isOverOpen = kind == RenameKind::OverOpen;
  const DWORD flags =
      (kind == RenameKind::ToFreeName ? 0 : kReplaceIfThere) | (isOverOpen ? kOpenFilesStayReadable : 0);
  const std::size_t nameBytes = fullPath.size() * sizeof(wchar_t);
  std::vector<std::uint64_t> room((sizeof(FILE_RENAME_INFO) + nameBytes) / sizeof(std::uint64_t) + 1);
  auto* rename = reinterpret_cast<FILE_RENAME_INFO*>(room.data());
  std::memcpy(rename, &flags, sizeof flags);  // the newer record has flags where the older has one truth value
  rename->FileNameLength = static_cast<DWORD>(nameBytes);
  std::memcpy(rename->FileName, fullPath.c_str(), nameBytes);
  const auto byteCount = static_cast<DWORD>(room.size() * sizeof(std::uint64_t));
  return SetFileInformationByHandle(file, isOverOpen ? kRenameInfoEx : FileRenameInfo, rename, byteCount) != 0;
}

}  // namespace tavimo::platform
