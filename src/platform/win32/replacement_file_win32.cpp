// A file that takes another's place when it is whole. The streams and the rest of the layer are files_win32.cpp.
//
// While it is written the new file has a name of its own beside the final one and is marked for deletion, so that a kill
// leaves nothing behind. Commit takes the mark away and renames it by its handle. A stream that is open on the old file
// may read on: where the system cannot rename over an open file, the old one steps aside first and comes back if the
// new one does not get the name.
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/common/guarded.h"
#include "platform/file_faults.h"
#include "platform/files.h"
#include "platform/win32/file_calls.h"
#include "platform/win32/wide_text.h"

namespace tavimo::platform {

namespace {

// The final name is kept in the arrays of the record as the wide text it is.
template <std::size_t Size>
bool Keep(const std::wstring& name, std::array<char, Size>& place) {
  const std::size_t byteCount = (name.size() + 1) * sizeof(wchar_t);
  if (byteCount > Size) return false;
  std::memcpy(place.data(), name.c_str(), byteCount);
  return true;
}

template <std::size_t Size>
std::wstring Kept(const std::array<char, Size>& place) {
  std::wstring name(Size / sizeof(wchar_t), L'\0');
  std::memcpy(name.data(), place.data(), name.size() * sizeof(wchar_t));
  name.resize(std::wcslen(name.c_str()));
  return name;
}

HANDLE CreateMarked(const std::wstring& name) {
  if (NextFileOperationFails()) return INVALID_HANDLE_VALUE;
  HANDLE file = CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE,
                            nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file != INVALID_HANDLE_VALUE) MarkForDeletion(file, TRUE);
  return file;
}

// For systems that rename over no file that is open: the old file keeps its readers under another name.
bool RenameOverOpen(HANDLE file, const std::wstring& name) {
  const std::wstring aside = NameBeside(name, L"old");
  if (!MoveFileExW(name.c_str(), aside.c_str(), MOVEFILE_REPLACE_EXISTING)) return false;
  const bool isPlaced = RenameByHandle(file, name, RenameKind::Plain);
  if (isPlaced) {
    DeleteFileW(aside.c_str());
  } else {
    MoveFileExW(aside.c_str(), name.c_str(), 0);
  }
  return isPlaced;
}

// On failure GetLastError tells why. Between two drives no file steps aside: none could take its place.
bool PutInPlace(HANDLE file, const std::wstring& name) {
  if (IsFolderOrReadOnly(name)) {
    SetLastError(ERROR_ACCESS_DENIED);
    return false;
  }
  if (RenameByHandle(file, name, RenameKind::OverOpen)) return true;
  if (GetLastError() == ERROR_NOT_SAME_DEVICE) return false;
  if (RenameByHandle(file, name, RenameKind::Plain)) return true;
  return GetLastError() != ERROR_NOT_SAME_DEVICE && RenameOverOpen(file, name);
}

}  // namespace

bool ReplacementFile::Begin(const char* path) noexcept {
  Discard();
  failed_ = false;
  stream_.handle_ = Guarded(FileStream::kNoHandle, [&] {
    const std::optional<std::wstring> name = FullPath(path);
    if (!name || IsFolderOrReadOnly(*name) || !Keep(*name, finalName_)) return FileStream::kNoHandle;
    return Stored(CreateMarked(NameBeside(*name, L"new")));
  });
  return stream_.IsOpen();
}

bool ReplacementFile::Commit(Durability durability) noexcept {
  bool isPlaced = IsWhole() && (durability == Durability::Cached || stream_.Flush()) && !NextFileOperationFails();
  if (isPlaced) {
    HANDLE file = HandleOf(stream_.handle_);
    MarkForDeletion(file, FALSE);
    isPlaced = !NextFileOperationFails() && Guarded(false, [&] { return PutInPlace(file, Kept(finalName_)); });
    if (!isPlaced) MarkForDeletion(file, TRUE);
  }
  Discard();
  return isPlaced;
}

// A file that was not put in place goes with its handle.
void ReplacementFile::Discard() noexcept { stream_.Close(); }

bool MoveFileOver(const char* source, const char* target) noexcept {
  return Guarded(false, [&] {
    const std::optional<std::wstring> from = WidePath(source);
    const std::optional<std::wstring> to = FullPath(target);
    FileStream stream = FileStream::Open(source, OpenMode::ReadWrite);
    if (!from || !to || !stream.IsOpen() || IsSameFile(source, target) || !stream.Flush()) return false;
    stream.Close();
    HANDLE file = CreateFileW(from->c_str(), GENERIC_READ | DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                              OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    const bool isPlaced = !NextFileOperationFails() && PutInPlace(file, *to);
    const bool isElsewhere = !isPlaced && GetLastError() == ERROR_NOT_SAME_DEVICE;
    CloseHandle(file);
    return isPlaced || (isElsewhere && CopyFileOver(source, target) && RemoveFile(source));
  });
}

}  // namespace tavimo::platform
