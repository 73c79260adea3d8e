#include "script_text.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

#include "refusal.h"
#include "system.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

struct KnownEncoding {
  Encoding encoding;
  const char* name;
  const char* converterName;
  std::string_view mark;  // at the start of a file
};

constexpr std::array<KnownEncoding, 5> kEncodings{{
    {Encoding::Utf8, "utf-8", "UTF-8", "\xEF\xBB\xBF"},
    {Encoding::Utf16LittleEndian, "utf-16le", "UTF-16LE", "\xFF\xFE"},
    {Encoding::Utf16BigEndian, "utf-16be", "UTF-16BE", "\xFE\xFF"},
    {Encoding::Gbk, "gbk", "CP936", ""},
    {Encoding::Gb18030, "gb18030", "GB18030", "\x84\x31\x95\x33"},
}};

const KnownEncoding& Known(Encoding encoding) { return kEncodings[static_cast<std::size_t>(encoding)]; }

std::string ReadAll(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  if (!fs::exists(status)) throw Refusal("there is no such file");
  if (!fs::is_regular_file(status)) throw Refusal("it is not a plain file");
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw Refusal("it cannot be read");
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::optional<Encoding> MarkedEncoding(std::string_view bytes) {
  for (const KnownEncoding& known : kEncodings) {
    if (!known.mark.empty() && bytes.starts_with(known.mark)) return known.encoding;
  }
  return {};
}

// The text in UTF-8, without a byte order mark; none where the bytes are not of that encoding.
std::optional<std::string> Decoded(std::string_view bytes, Encoding encoding) {
  const KnownEncoding& known = Known(encoding);
  if (!known.mark.empty() && bytes.starts_with(known.mark)) bytes.remove_prefix(known.mark.size());
  return Utf8FromEncoding(bytes, known.converterName);
}

struct Found {
  Encoding encoding;
  std::string utf8;
};

// What is UTF-16 without its mark, or UTF-32, would pass for text with zero bytes in it.
void RefuseWideText(const std::string& bytes) {
  if (bytes.starts_with(std::string_view("\xFF\xFE\0\0", 4)) ||
      bytes.starts_with(std::string_view("\0\0\xFE\xFF", 4))) {
    throw Refusal("it is UTF-32, which is not read; save it as UTF-8");
  }
  const auto zeros = static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\0'));
  if (bytes.size() >= 16 && zeros * 5 > bytes.size() * 2 && !MarkedEncoding(bytes)) {  // Latin text has half
    throw Refusal("it has zero bytes, as UTF-16 has; say what it is with --encoding");
  }
}

Found FindEncoding(const std::string& bytes) {
  RefuseWideText(bytes);
  const auto marked = MarkedEncoding(bytes);
  const std::vector<Encoding> candidates =
      marked ? std::vector{*marked} : std::vector{Encoding::Utf8, Encoding::Gbk, Encoding::Gb18030};
  for (const Encoding encoding : candidates) {
    if (auto utf8 = Decoded(bytes, encoding)) return {encoding, std::move(*utf8)};
  }
  if (marked) throw Refusal("its byte order mark says " + NameOf(*marked) + ", but not all of it is");
  throw Refusal("it is neither all UTF-8 nor all GBK; mend it, or say what it is with --encoding");
}

Found FindNamedEncoding(const std::string& bytes, const std::string& name) {
  for (const KnownEncoding& known : kEncodings) {
    if (known.name != name) continue;
    if (auto utf8 = Decoded(bytes, known.encoding)) return {known.encoding, std::move(*utf8)};
    throw Refusal("not all of it is " + name);
  }
  throw Refusal("no encoding is called " + ReadableText(name));
}

std::size_t CharacterBytes(unsigned char first) {
  if (first < 0x80) return 1;
  if (first < 0xE0) return 2;
  return first < 0xF0 ? 3 : 4;
}

void Append(const std::string& character, ScriptText& text, std::size_t line, std::size_t column) {
  std::array<char, 8> gbk{};
  if (character.size() == 1) {
    text.gbk += character;  // a zero byte among them
  } else if (tvGbkFromUtf8(character.c_str(), gbk.data(), static_cast<int>(gbk.size())) >= 0) {
    text.gbk += gbk.data();
  } else {
    text.gbk += '?';
    text.lost.push_back({line, column, character});
  }
}

void Encode(const std::string& utf8, ScriptText& text) {
  std::size_t line = 1;
  std::size_t column = 1;
  for (std::size_t at = 0; at < utf8.size(); ++column) {
    const std::string character = utf8.substr(at, CharacterBytes(static_cast<unsigned char>(utf8[at])));
    Append(character, text, line, column);
    at += character.size();
    if (character == "\n") {
      ++line;
      column = 0;
    }
  }
}

}  // namespace

const std::vector<std::string>& EncodingNames() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> list;
    list.reserve(kEncodings.size());
    for (const KnownEncoding& known : kEncodings) list.emplace_back(known.name);
    return list;
  }();
  return names;
}

std::string NameOf(Encoding encoding) { return Known(encoding).name; }

ScriptText ReadScriptText(const fs::path& file, const std::optional<std::string>& encodingName) {
  std::string bytes = ReadAll(file);
  const Found found = encodingName ? FindNamedEncoding(bytes, *encodingName) : FindEncoding(bytes);
  ScriptText text;
  text.encoding = found.encoding;
  if (found.encoding == Encoding::Gbk) {
    text.gbk = std::move(bytes);
  } else {
    Encode(found.utf8, text);
  }
  return text;
}

std::string DescribeLost(const fs::path& file, const ScriptText& text) {
  std::string lines;
  for (const LostCharacter& lost : text.lost) {
    lines += Readable(file) + ":" + std::to_string(lost.line) + ":" + std::to_string(lost.column) + ": GBK has no '" +
             ReadableText(lost.character) + "'; write it in another way\n";
  }
  return lines;
}

}  // namespace tavimo::host
