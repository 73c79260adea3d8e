#include "sentences/parameter_files.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "platform/files.h"
#include "platform/utility.h"

namespace tavimo::sentences {

using platform::FileStream;
using platform::OpenMode;
using platform::ReplacementFile;

namespace {

constexpr std::size_t kLongestLine = 98;
using ValueText = std::array<char, 16>;

bool WriteWhole(const char* path, const void* bytes, std::size_t byteCount) noexcept {
  ReplacementFile file;
  if (!file.Begin(path)) return false;
  file.Write(bytes, static_cast<std::int64_t>(byteCount));
  return file.Commit(ReplacementFile::Durability::Synced);
}

// Takes the next line, with its line feed, off the text.
std::string_view TakeLine(std::string_view& text) noexcept {
  const std::string_view piece = text.substr(0, kLongestLine);
  const std::string_view line = piece.substr(0, piece.find('\n') + 1);
  const std::string_view taken = line.empty() ? piece : line;
  text.remove_prefix(taken.size());
  return taken;
}

// The number a line begins with; 0 without digits. False when it is wider than 32 bits.
bool LeadingNumber(std::string_view line, std::int32_t& value) noexcept {
  line.remove_prefix(std::min(line.find_first_not_of(" \t\r\n\v\f"), line.size()));
  if (line.starts_with('+') && !line.starts_with("+-")) line.remove_prefix(1);
  value = 0;
  return std::from_chars(line.data(), line.data() + line.size(), value).ec != std::errc::result_out_of_range;
}

}  // namespace

bool WriteSoundParameters(const char* recordingPath, const char* parameterPath, const std::uint8_t* record) noexcept {
  if (record == nullptr || !WriteWhole(parameterPath, record, kSoundParameterBytes)) return false;
  platform::SetSameFileTime(recordingPath, parameterPath);
  return true;
}

bool ReadSoundParameters(const char* parameterPath, std::uint8_t* record) noexcept {
  FileStream file = FileStream::Open(parameterPath, OpenMode::Read);
  if (!file.IsOpen()) return false;
  std::array<std::uint8_t, kSoundParameterBytes> bytes;
  const std::int64_t got = file.Read(bytes.data(), kSoundParameterBytes);
  if (record != nullptr && got > 0) std::copy_n(bytes.begin(), got, record);
  return true;
}

bool WriteParameterValues(const char* path, const ParameterValues& values) noexcept {
  std::array<char, 3 * std::tuple_size_v<ValueText>> text;
  char* end = text.data();
  for (const std::int32_t value : values) {
    end = std::to_chars(end, text.data() + text.size(), value).ptr;
    *end++ = '\r';
    *end++ = '\n';
  }
  return WriteWhole(path, text.data(), static_cast<std::size_t>(end - text.data()));
}

bool ParameterValuesMatch(const char* path, const ParameterValues& values) noexcept {
  FileStream file = FileStream::Open(path, OpenMode::Read);
  if (!file.IsOpen()) return false;
  std::array<char, 3 * kLongestLine> bytes;
  const std::int64_t got = file.Read(bytes.data(), static_cast<std::int64_t>(bytes.size()));
  std::string_view text(bytes.data(), static_cast<std::size_t>(std::max<std::int64_t>(got, 0)));
  return std::all_of(values.begin(), values.end(), [&text](std::int32_t expected) {
    std::int32_t value = 0;
    return !text.empty() && LeadingNumber(TakeLine(text), value) && value == expected;
  });
}

}  // namespace tavimo::sentences
