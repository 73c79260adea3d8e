#include "page_data.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>

#include "refusal.h"
#include "text.h"

namespace tavimo::host {

namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

void AppendGroup(std::string& text, std::string_view group) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    bits = bits << 8 | (i < group.size() ? static_cast<unsigned char>(group[i]) : 0U);
  }
  for (std::size_t i = 0; i < 4; ++i) text += i <= group.size() ? kDigits[bits >> (18 - 6 * i) & 63] : '=';
}

}  // namespace

std::string JsonText(std::string_view utf8) {
  std::string text = "\"";
  for (const char byte : utf8) {
    const auto code = static_cast<unsigned char>(byte);
    // A "<" could end the element that the text stands in.
    if (code < 0x20 || byte == '<' || byte == '"' || byte == '\\') {
      std::array<char, 8> escape{};
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(code));
      text += escape.data();
    } else {
      text += byte;
    }
  }
  return text + "\"";
}

std::string DataUrl(std::string_view bytes, const char* mediaType) {
  std::string url = std::string("data:") + mediaType + ";base64,";
  url.reserve(url.size() + (bytes.size() + 2) / 3 * 4);
  for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(bytes.size(), 3)))
    AppendGroup(url, bytes.substr(0, 3));
  return url;
}

std::string FileBytes(const std::filesystem::path& file) {
  std::error_code error;
  std::ifstream stream;
  if (std::filesystem::is_regular_file(file, error)) stream.open(file, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  if (!stream.is_open() || stream.bad()) throw Refusal(Readable(file) + " cannot be read");
  return bytes;
}

}  // namespace tavimo::host
