// GBK to and from the system's own text, by the table that serves every platform: the system's code page may be another.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavimo::platform {

// Nothing when bytes form no character. May throw std::bad_alloc.
[[nodiscard]] std::optional<std::wstring> WideFromGbk(std::string_view gbk);

// For what is shown: bytes that form no character become "?". May throw std::bad_alloc.
[[nodiscard]] std::wstring ShownText(std::string_view gbk);

// Nothing when a character has no GBK form. May throw std::bad_alloc.
[[nodiscard]] std::optional<std::string> GbkFromWide(std::wstring_view wide);

// UTF-8, as host programs name files and devices. Nothing when the text is malformed. May throw std::bad_alloc.
[[nodiscard]] std::optional<std::wstring> WideFromUtf8(std::string_view utf8);
[[nodiscard]] std::optional<std::string> Utf8FromWide(std::wstring_view wide);

// A path for the wide functions. Nothing for a null or empty path, bytes that form no character, and a colon that is not
// a drive's: it would name a stream inside a file. May throw std::bad_alloc.
[[nodiscard]] std::optional<std::wstring> WidePath(const char* enginePath);

}  // namespace tavimo::platform
