// Implements wide_text.h over the common table; UTF-8 is the system's.
#include "platform/win32/wide_text.h"

#include "platform/text.h"
#include "platform/win32/system.h"

namespace tavimo::platform {

namespace {

// Calls take(character) for each character of a GBK text, 0 for bytes that form none, until it answers false.
template <class Taker>
bool ForEachCharacter(std::string_view gbk, Taker take) {
  for (std::size_t i = 0; i < gbk.size();) {
    const bool hasTrail = IsLeadByte(gbk[i]) && i + 1 < gbk.size();
    const auto lead = static_cast<unsigned char>(gbk[i]);
    const auto trail = hasTrail ? static_cast<unsigned char>(gbk[i + 1]) : static_cast<unsigned char>(0);
    const char32_t character = lead < 0x80 ? lead : UnicodeFromGbk(lead, trail);
    if (!take(character)) return false;
    i += hasTrail ? 2 : 1;
  }
  return true;
}

}  // namespace

// Every character of the code page lies in the first plane: one unit each.
std::optional<std::wstring> WideFromGbk(std::string_view gbk) {
  std::wstring wide;
  wide.reserve(gbk.size());
  const bool isWhole = ForEachCharacter(gbk, [&](char32_t character) {
    if (character != 0) wide += static_cast<wchar_t>(character);
    return character != 0;
  });
  return isWhole ? std::optional(std::move(wide)) : std::nullopt;
}

std::wstring ShownText(std::string_view gbk) {
  std::wstring wide;
  wide.reserve(gbk.size());
  ForEachCharacter(gbk, [&](char32_t character) {
    wide += character == 0 ? L'?' : static_cast<wchar_t>(character);
    return true;
  });
  return wide;
}

std::optional<std::string> GbkFromWide(std::wstring_view wide) {
  std::string gbk;
  gbk.reserve(2 * wide.size());
  for (const wchar_t unit : wide) {
    const int code = GbkFromUnicode(unit);
    if (code < 0) return std::nullopt;
    if (code > 0xFF) gbk += static_cast<char>(code >> 8);
    gbk += static_cast<char>(code & 0xFF);
  }
  return gbk;
}

std::optional<std::wstring> WideFromUtf8(std::string_view utf8) {
  if (utf8.empty()) return std::wstring();
  const int byteCount = static_cast<int>(utf8.size());
  const int unitCount = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), byteCount, nullptr, 0);
  if (unitCount == 0) return std::nullopt;
  std::wstring wide(static_cast<std::size_t>(unitCount), L'\0');
  MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), byteCount, wide.data(), unitCount);
  return wide;
}

std::optional<std::string> Utf8FromWide(std::wstring_view wide) {
  if (wide.empty()) return std::string();
  const int unitCount = static_cast<int>(wide.size());
  const int byteCount =
      WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, wide.data(), unitCount, nullptr, 0, nullptr, nullptr);
  if (byteCount == 0) return std::nullopt;
  std::string utf8(static_cast<std::size_t>(byteCount), '\0');
  WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, wide.data(), unitCount, utf8.data(), byteCount, nullptr, nullptr);
  return utf8;
}

std::optional<std::wstring> WidePath(const char* enginePath) {
  constexpr std::size_t kDriveColon = 1;
  if (enginePath == nullptr || *enginePath == '\0') return std::nullopt;
  const std::string_view gbk = enginePath;
  const std::size_t colon = gbk.rfind(':');  // never the second byte of a character
  if (colon != std::string_view::npos && colon != kDriveColon) return std::nullopt;
  return WideFromGbk(gbk);
}

}  // namespace tavimo::platform
