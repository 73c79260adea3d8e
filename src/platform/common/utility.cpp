// File times compared and carried over, the extension of a path, trailing white space.
#include "platform/utility.h"

#include <string_view>

#include "platform/files.h"
#include "platform/text.h"

namespace tavimo::platform {

bool IsSameTimeFiles(const char* left, const char* right) noexcept {
  FileTime leftTime;
  FileTime rightTime;
  return GetLastWriteTime(left, leftTime) && GetLastWriteTime(right, rightTime) && leftTime == rightTime;
}

bool SetSameFileTime(const char* source, const char* target) noexcept {
  FileTime time;
  return GetLastWriteTime(source, time) && SetLastWriteTime(target, time);
}

void GetFileExtName(const char* path, char* extension, int size) noexcept {
  if (extension == nullptr || size < 1) return;
  const std::string_view text = path == nullptr ? "" : path;
  std::size_t start = text.size();
  // By characters: the second byte of one may look like a backslash.
  for (std::size_t i = 0; i < text.size(); i += IsLeadByte(text[i]) ? 2 : 1) {
    if (text[i] == '.') start = i;
    if (text[i] == '\\' || text[i] == '/') start = text.size();
  }
  const std::string_view found = text.substr(start);
  const std::size_t length = WholeCharacterBytes(found, static_cast<std::size_t>(size) - 1);
  found.copy(extension, length);
  extension[length] = '\0';
}

void StrongRtrim(char* text) noexcept {
  if (text == nullptr) return;
  // None of these bytes can be the second one of a GBK character.
  const std::size_t last = std::string_view(text).find_last_not_of(" \t\r\n\v\f");
  text[last == std::string_view::npos ? 0 : last + 1] = '\0';
}

}  // namespace tavimo::platform
