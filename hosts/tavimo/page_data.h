// What a page that stands alone is made of: texts as JSON, files as data URLs (RFC 2397).
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tavimo::host {

// A JSON string that may stand within a script element of an HTML page.
[[nodiscard]] std::string JsonText(std::string_view utf8);

[[nodiscard]] std::string DataUrl(std::string_view bytes, const char* mediaType);

// All of a file. A Refusal when it cannot be read.
[[nodiscard]] std::string FileBytes(const std::filesystem::path& file);

}  // namespace tavimo::host
