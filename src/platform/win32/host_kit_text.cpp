// The host kit's text and paths. Each call converts whole or answers -1 and an empty string.
#include <cstring>
#include <optional>
#include <string>

#include "platform/common/engine_path.h"
#include "platform/common/guarded.h"
#include "platform/text.h"
#include "platform/win32/wide_text.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;

// Bytes written with the zero, or -1 and an empty string where there is room for one.
int PutText(const std::optional<std::string>& text, char* buffer, int size) noexcept {
  if (!buffer || size < 1) return -1;
  buffer[0] = 0;
  if (!text || text->size() >= static_cast<std::size_t>(size)) return -1;
  std::memcpy(buffer, text->c_str(), text->size() + 1);
  return static_cast<int>(text->size()) + 1;
}

using Converter = int (*)(std::string_view text, char* buffer, std::size_t size) noexcept;

int Convert(const char* text, char* buffer, int size, Converter convert) noexcept {
  if (!text || !buffer || size < 1) return PutText(std::nullopt, buffer, size);
  const int length = convert(text, buffer, static_cast<std::size_t>(size));
  return length < 0 ? -1 : length + 1;
}

}  // namespace

extern "C" {

int tvGbkFromUtf8(const char* utf8, char* gbk, int size) VC_NOEXCEPT {
  return Convert(utf8, gbk, size, &platform::GbkFromUtf8);
}

int tvUtf8FromGbk(const char* gbk, char* utf8, int size) VC_NOEXCEPT {
  return Convert(gbk, utf8, size, &platform::Utf8FromGbk);
}

int tvEnginePath(const char* native, char* path, int size) VC_NOEXCEPT {
  return PutText(native ? platform::EnginePath(native) : std::nullopt, path, size);
}

int tvNativePath(const char* path, char* native, int size) VC_NOEXCEPT {
  return platform::Guarded(-1, [&] {
    const std::optional<std::wstring> wide = platform::WidePath(path);
    return PutText(wide ? platform::Utf8FromWide(*wide) : std::nullopt, native, size);
  });
}

int tvMapDrive(char, const char*, int) VC_NOEXCEPT { return -1; }

}  // extern "C"
