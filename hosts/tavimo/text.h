// Text for people (UTF-8), text for the engine (GBK), and times as people write them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavimo::host {

[[nodiscard]] std::filesystem::path PathFromUtf8(std::string_view utf8);
[[nodiscard]] std::string Utf8(const std::filesystem::path& path);

// Text and names fit for a terminal or a JSON text: control characters and bytes that are not UTF-8 become U+FFFD.
[[nodiscard]] std::string ReadableText(std::string_view utf8);
[[nodiscard]] std::string Readable(const std::filesystem::path& path);

// Text of the engine. What is no GBK, such as half a character, becomes U+FFFD.
[[nodiscard]] std::string Utf8FromGbk(std::string_view gbk);

// Readable text as a JSON string.
[[nodiscard]] std::string Quoted(const std::string& readable);

// The start of a text, at most so many bytes, cut between two characters.
[[nodiscard]] std::string Shortened(std::string_view utf8, std::size_t mostBytes);

// Text as the engine takes it. None when it has a character that GBK lacks.
[[nodiscard]] std::optional<std::string> GbkFromUtf8(const std::string& utf8);

// The engine's form of a path: GBK and backslashes. None when it has no GBK form.
[[nodiscard]] std::optional<std::string> EnginePath(const std::filesystem::path& path);

// "1 page", "2 pages".
[[nodiscard]] std::string Counted(std::size_t count, const std::string& thing);

// m:ss.mmm, the minutes running on past the hour.
[[nodiscard]] std::string FormatTime(std::int64_t timeMs);

// "12.5", "1:02.5" and "1:00:02.5" in milliseconds; none for anything else.
[[nodiscard]] std::optional<std::int64_t> ParseTime(std::string_view text);

}  // namespace tavimo::host
