// The text of a lesson's script or of its questions, brought into the GBK that the engine reads.
//
// What encoding a file has is never guessed: its byte order mark tells it, or all of it is UTF-8, or all of it is GBK or
// GB18030; where none of these holds the person must say it. Text that is ASCII alone is all of them at once.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tavimo::host {

enum class Encoding { Utf8, Utf16LittleEndian, Utf16BigEndian, Gbk, Gb18030 };

// "utf-8", "utf-16le", "utf-16be", "gbk", "gb18030".
[[nodiscard]] const std::vector<std::string>& EncodingNames();
[[nodiscard]] std::string NameOf(Encoding encoding);

// A character that GBK lacks. Lines and columns count from 1, columns in characters.
struct LostCharacter {
  std::size_t line = 0;
  std::size_t column = 0;
  std::string character;  // UTF-8
};

struct ScriptText {
  std::string gbk;  // the file's own bytes where it is GBK already; a character that GBK lacks is a question mark
  Encoding encoding = Encoding::Utf8;
  std::vector<LostCharacter> lost;
};

// A Refusal when the file cannot be read, is not what encodingName says, or is none of the encodings above.
[[nodiscard]] ScriptText ReadScriptText(const std::filesystem::path& file,
                                        const std::optional<std::string>& encodingName);

// Lines of "file:line:column: …" for the characters that GBK lacks; empty where there are none.
[[nodiscard]] std::string DescribeLost(const std::filesystem::path& file, const ScriptText& text);

}  // namespace tavimo::host
