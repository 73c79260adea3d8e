// Conversion between GBK and UTF-8 while the program runs: a table each way, nothing searched byte by byte, nothing
// allocated. Not for message literals, which are converted when the code is compiled (gbk_literal.h).
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

#include "platform/gbk_literal.h"

namespace tavimo::platform {

namespace {

constexpr char32_t kEuroSign = 0x20AC;
constexpr unsigned kFirstLead = 0x81;
constexpr unsigned kFirstTrail = 0x40;
constexpr std::size_t kLeadCount = 0xFE - kFirstLead + 1;
constexpr std::size_t kTrailCount = 0xFE - kFirstTrail + 1;

constexpr std::size_t PairIndex(unsigned lead, unsigned trail) {
  return (lead - kFirstLead) * kTrailCount + (trail - kFirstTrail);
}

constexpr auto MakeDecodeTable() {
  std::array<char16_t, kLeadCount * kTrailCount> table{};
  for (const std::uint32_t entry : literal::kTable) {
    const unsigned code = entry & 0xFFFF;
    if (code > 0xFF) table[PairIndex(code >> 8, code & 0xFF)] = static_cast<char16_t>(entry >> 16);
  }
  return table;
}

// Made when the code is compiled; 0 where a pair has no character.
constexpr auto kDecodeTable = MakeDecodeTable();

constexpr char32_t kMalformed = 0xFFFFFFFF;

// How many bytes follow a first byte, -1 when it cannot be one. 0xC0, 0xC1 and above 0xF4 could only be overlong or out
// of range.
int FollowingBytes(unsigned char first) {
  if (first < 0x80) return 0;
  if (first < 0xC2 || first > 0xF4) return -1;
  return first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
}

// Takes one character off the front of a text that is not empty.
char32_t TakeUtf8(std::string_view& text) {
  const auto first = static_cast<unsigned char>(text.front());
  const int following = FollowingBytes(first);
  if (following < 0 || text.size() <= static_cast<std::size_t>(following)) return kMalformed;
  char32_t character = following == 0 ? first : first & (0x3Fu >> following);
  for (int i = 1; i <= following; ++i) {
    const auto next = static_cast<unsigned char>(text[static_cast<std::size_t>(i)]);
    if ((next & 0xC0) != 0x80) return kMalformed;
    character = character << 6 | (next & 0x3Fu);
  }
  text.remove_prefix(static_cast<std::size_t>(following) + 1);
  constexpr char32_t kLeastOfLength[] = {0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  return isSurrogate || character < kLeastOfLength[following] ? kMalformed : character;
}

char32_t TakeGbk(std::string_view& text) {
  const std::size_t byteCount = IsLeadByte(text.front()) ? 2 : 1;
  if (text.size() < byteCount) return kMalformed;
  const auto trail = byteCount == 2 ? static_cast<unsigned char>(text[1]) : static_cast<unsigned char>(0);
  const char32_t character = UnicodeFromGbk(static_cast<unsigned char>(text.front()), trail);
  text.remove_prefix(byteCount);
  return character == 0 ? kMalformed : character;
}

std::size_t PutGbk(char32_t character, char* bytes) {
  const int code = GbkFromUnicode(character);
  if (code < 0) return 0;
  if (code > 0xFF) *bytes++ = static_cast<char>(code >> 8);
  *bytes = static_cast<char>(code & 0xFF);
  return code > 0xFF ? 2 : 1;
}

// Every GBK character lies in the first plane: at most three bytes.
std::size_t PutUtf8(char32_t character, char* bytes) {
  if (character < 0x80) {
    bytes[0] = static_cast<char>(character);
    return 1;
  }
  const std::size_t byteCount = character < 0x800 ? 2 : 3;
  for (std::size_t i = byteCount; i-- > 1; character >>= 6) bytes[i] = static_cast<char>(0x80 | (character & 0x3F));
  bytes[0] = static_cast<char>((byteCount == 2 ? 0xC0 : 0xE0) | character);
  return byteCount;
}

// Take cuts a character off the text, Put writes it and says in how many bytes (0: it has no form). A zero inside the
// text is malformed: the result would seem to end there.
template <typename Take, typename Put>
int Convert(std::string_view text, char* converted, std::size_t size, Take take, Put put) {
  if (size == 0) return -1;
  size = std::min(size, static_cast<std::size_t>(std::numeric_limits<int>::max()));
  std::size_t length = 0;
  while (!text.empty()) {
    char bytes[4];
    const char32_t character = take(text);
    const std::size_t byteCount = character == kMalformed || character == 0 ? 0 : put(character, bytes);
    if (byteCount == 0 || byteCount >= size - length) {
      converted[0] = '\0';
      return -1;
    }
    std::copy_n(bytes, byteCount, converted + length);
    length += byteCount;
  }
  converted[length] = '\0';
  return static_cast<int>(length);
}

}  // namespace

std::size_t WholeCharacterBytes(std::string_view text, std::size_t limit) noexcept {
  limit = std::min(limit, text.size());
  std::size_t length = 0;
  while (length < limit) {
    const std::size_t byteCount = IsLeadByte(text[length]) ? 2 : 1;
    if (byteCount > limit - length) break;
    length += byteCount;
  }
  return length;
}

char32_t UnicodeFromGbk(unsigned char lead, unsigned char trail) noexcept {
  if (trail == 0) return lead < 0x80 ? lead : lead == 0x80 ? kEuroSign : 0;
  if (!IsLeadByte(static_cast<char>(lead)) || trail < kFirstTrail || trail == 0xFF) return 0;
  return kDecodeTable[PairIndex(lead, trail)];
}

int GbkFromUnicode(char32_t character) noexcept {
  if (character < 0x80) return static_cast<int>(character);
  return character > 0xFFFF ? -1 : literal::Lookup(character);
}

int GbkFromUtf8(std::string_view utf8, char* gbk, std::size_t size) noexcept {
  return Convert(utf8, gbk, size, TakeUtf8, PutGbk);
}

int Utf8FromGbk(std::string_view gbk, char* utf8, std::size_t size) noexcept {
  return Convert(gbk, utf8, size, TakeGbk, PutUtf8);
}

}  // namespace tavimo::platform
