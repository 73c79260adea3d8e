#include "shown_values.h"

#include <algorithm>

#include "text.h"

namespace tavimo::host {

namespace {

constexpr std::size_t kMostNumbers = 20;
constexpr std::size_t kMostBytes = 32;
constexpr const char* kMore = "…";

template <typename Number>
std::string List(std::span<const Number> numbers) {
  std::string list;
  for (const Number number : numbers.first(std::min(numbers.size(), kMostNumbers))) {
    list += (list.empty() ? "" : ", ") + std::to_string(number);
  }
  return list + (numbers.size() > kMostNumbers ? std::string(", ") + kMore : "");
}

}  // namespace

std::string ShownText(const std::string& gbk) { return ReadableText(Utf8FromGbk(gbk)); }

std::string ShownNumbers(std::span<const std::int32_t> numbers) { return List(numbers); }
std::string ShownNumbers(std::span<const std::uint32_t> numbers) { return List(numbers); }

std::string ShownBytes(std::span<const std::byte> bytes) {
  std::string digits;
  for (const std::byte byte : bytes.first(std::min(bytes.size(), kMostBytes))) {
    digits += "0123456789abcdef"[std::to_integer<unsigned>(byte) >> 4];
    digits += "0123456789abcdef"[std::to_integer<unsigned>(byte) & 15];
  }
  return digits + (bytes.size() > kMostBytes ? kMore : "");
}

}  // namespace tavimo::host
